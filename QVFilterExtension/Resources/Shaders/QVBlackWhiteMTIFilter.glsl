// Black and white. The lower half of the strength takes the colour away, the upper half hardens the greys towards a
// high-contrast print.
#include "color.glsl"

uniform float effectValue;

vec4 QVBlackWhiteMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float grey = luma(straight(color));
    float curved = grey * grey * (3.0 - 2.0 * grey) * 1.06 - 0.03;
    grey = clamp(mix(grey, curved, max(2.0 * effectValue - 1.0, 0.0)), 0.0, 1.0);
    return vec4(mix(vec3(grey * color.a), color.rgb, max(1.0 - 2.0 * effectValue, 0.0)), color.a);
}
