// What a sample of a Y'CbCr plane takes in.

// The colour that a matrix row is applied to, from the mean of the premultiplied pixels that a sample covers: straight
// beside an alpha plane, else over black. The 1 is the row's bias.
vec4 sampleColor(vec4 mean, bool straight) {
    return vec4(clamp(straight ? mean.rgb / max(mean.a, 1.0 / 1024.0) : mean.rgb, 0.0, 1.0), 1.0);
}
