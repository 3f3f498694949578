#version 450

// One sprite: a quad with a margin of about a pixel, in which the texture's transparent surroundings soften its edge.
layout(location = 0) in vec4 centerAndAxisX;   // normalised device coordinates
layout(location = 1) in vec4 axisYAndMargins;  // margins in half-sizes of the sprite
layout(location = 2) in vec4 place;            // in the atlas: corner and size, 0..1
layout(location = 3) in vec4 factor;           // of the premultiplied texel
layout(location = 4) in vec4 detail;           // x: mip level

layout(location = 0) out vec2 atlasUV;
layout(location = 1) flat out vec4 colorFactor;
layout(location = 2) flat out float mipLevel;

void main() {
    vec2 corner = vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1) * 2.0 - 1.0;
    corner *= 1.0 + axisYAndMargins.zw;
    gl_Position = vec4(centerAndAxisX.xy + corner.x * centerAndAxisX.zw + corner.y * axisYAndMargins.xy, 0.0, 1.0);
    atlasUV = place.xy + (vec2(corner.x, -corner.y) * 0.5 + 0.5) * place.zw;
    colorFactor = factor;
    mipLevel = detail.x;
}
