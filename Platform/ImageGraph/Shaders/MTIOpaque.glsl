// The colour as it is stored, alpha 1.
vec4 MTIOpaque(vec2 uv) {
    return vec4(readHere(0).rgb, 1.0);
}
