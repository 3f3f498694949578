#include "color.glsl"

uniform float saturation;  // 0 grey, 1 unchanged, above 1 stronger

vec4 MTISaturation(vec2 uv) {
    vec4 pixel = readHere(0);
    return vec4(clamp(mix(vec3(luma(pixel.rgb)), pixel.rgb, saturation), 0.0, pixel.a), pixel.a);
}
