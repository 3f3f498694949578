// An affine picture of the input, transparent outside, with an edge that is smooth over one output pixel.
uniform vec4 matrix;  // two columns; place in the input = matrix * uv + offset
uniform vec2 offset;
uniform vec2 edge;    // output pixels per unit of the input's width and height, across the edges

vec4 MTITransform(vec2 uv) {
    vec2 place = matrix.xy * uv.x + matrix.zw * uv.y + offset;
    vec2 cover = clamp(min(place, 1.0 - place) * edge + 0.5, 0.0, 1.0);
    return readInput(0, place) * (cover.x * cover.y);
}
