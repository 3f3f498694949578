// The picture in black and white.
#include "color.glsl"

uniform float strength;  // share of the grey, 0..1
uniform float contrast;  // 0 the luma, 1 a print in black ink

vec4 QVTurnBWMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    float grey = luma(straight(pixel));
    grey = mix(grey, smoothstep(0.16, 0.7, grey), contrast);
    return mix(pixel, premultiplied(vec3(grey), pixel.a), strength);
}
