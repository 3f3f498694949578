// Part of the input, bilinear.
uniform vec2 scale;   // place in the input = uv * scale + offset
uniform vec2 offset;

vec4 MTIEnlarge(vec2 uv) {
    return readInput(0, uv * scale + offset);
}
