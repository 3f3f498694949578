// A flash of light: exposure rises by stops, highlights burn out first, and at full strength hardly more than white is
// left.
#include "color.glsl"

uniform float effectValue;
uniform float pulse;  // 0..1

vec4 QVBrightPEMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float flash = pulse * effectValue;
    // Black and white stay; shadows gain `gain` times, lights are compressed.
    float gain = 1.0 + flash * (1.5 + 6.0 * flash);
    vec3 plain = straight(color);
    vec3 lit = plain * gain / (1.0 + plain * (gain - 1.0));
    // Light strays in the lens, most of all from what is bright.
    lit += (1.0 - lit) * (flash * (0.12 + 0.55 * flash) * (0.35 + 0.65 * luma(lit)));
    return premultiplied(lit, color.a);
}
