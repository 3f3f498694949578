uniform float opacity;  // 0..1

vec4 MTIOpacity(vec2 uv) {
    return readHere(0) * opacity;
}
