uniform float gain;  // of the colour, 2^exposure

vec4 MTIExposure(vec2 uv) {
    vec4 pixel = readHere(0);
    return vec4(min(pixel.rgb * max(gain, 0.0), pixel.a), pixel.a);
}
