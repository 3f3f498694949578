#version 450

layout(set = 0, binding = 0) uniform sampler2D atlas;

layout(location = 0) in vec2 atlasUV;
layout(location = 1) flat in vec4 colorFactor;
layout(location = 2) flat in float mipLevel;
layout(location = 0) out vec4 color;

void main() { color = textureLod(atlas, atlasUV, mipLevel) * colorFactor; }
