#version 450

// One sprite: a quad with a margin of a pixel of the frame for its soft edge.
layout(location = 0) in vec4 centerAndAxisX;  // normalised device coordinates
layout(location = 1) in vec4 axisYAndHalf;    // half the sprite's sides, pixels of the frame
layout(location = 2) in vec4 placeInAtlas;    // corner and size, 0..1
layout(location = 3) in vec4 factor;          // of the premultiplied texel
layout(location = 4) in vec4 detail;          // mip level, its texel across and down in half-sides of the sprite

layout(location = 0) out vec2 local;  // −1..1 between the sprite's edges, y up
layout(location = 1) flat out vec2 halfSides;
layout(location = 2) flat out vec4 place;
layout(location = 3) flat out vec4 colorFactor;
layout(location = 4) flat out vec3 texel;

void main() {
    local = (vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1) * 2.0 - 1.0) * (1.0 + 1.0 / axisYAndHalf.zw);
    gl_Position = vec4(centerAndAxisX.xy + local.x * centerAndAxisX.zw + local.y * axisYAndHalf.xy, 0.0, 1.0);
    halfSides = axisYAndHalf.zw;
    place = placeInAtlas;
    colorFactor = factor;
    texel = detail.xyz;
}
