uniform vec4 color;  // not premultiplied

vec4 MTIColor(vec2 uv) {
    return vec4(color.rgb * color.a, color.a);
}
