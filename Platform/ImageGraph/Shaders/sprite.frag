#version 450

layout(set = 0, binding = 0) uniform sampler2D atlas;

layout(location = 0) in vec4 pixelAndPlace;
layout(location = 1) flat in vec4 edgeAndLimit;
layout(location = 2) flat in vec4 range;
layout(location = 3) flat in vec4 colorFactor;
layout(location = 0) out vec4 color;

void main() {
    // How much of the pixel the sprite covers along its sides, also when it is narrower than a pixel.
    vec2 cover = clamp(edgeAndLimit.xy - abs(pixelAndPlace.xy), vec2(0.0), edgeAndLimit.zw);
    color = texture(atlas, clamp(pixelAndPlace.zw, range.xy, range.zw)) * (colorFactor * (cover.x * cover.y));
}
