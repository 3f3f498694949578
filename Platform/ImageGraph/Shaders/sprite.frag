#version 450

layout(set = 0, binding = 0) uniform sampler2D atlas;

layout(location = 0) in vec2 local;
layout(location = 1) flat in vec2 halfSides;
layout(location = 2) flat in vec4 place;
layout(location = 3) flat in vec4 colorFactor;
layout(location = 4) flat in vec3 texel;
layout(location = 0) out vec4 color;

void main() {
    // How much of the pixel the sprite covers along its sides, also when it is narrower than a pixel.
    vec2 cover = clamp((1.0 - local) * halfSides + 0.5, 0.0, 1.0) + clamp((1.0 + local) * halfSides + 0.5, 0.0, 1.0) - 1.0;
    // The outermost half texel would be mixed with what surrounds the picture in the atlas.
    vec2 inner = max(1.0 - texel.yz, 0.0);
    vec2 uv = clamp(local, -inner, inner) * vec2(0.5, -0.5) + 0.5;
    color = textureLod(atlas, place.xy + uv * place.zw, texel.x) * (colorFactor * max(cover.x * cover.y, 0.0));
}
