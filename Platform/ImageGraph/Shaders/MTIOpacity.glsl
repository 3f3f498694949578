uniform float opacity;  // 0..1, bounded here too for the reason that blend.glsl gives

vec4 MTIOpacity(vec2 uv) {
    return readHere(0) * clamp(opacity, 0.0, 1.0);
}
