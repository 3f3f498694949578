// Black and white as on film behind a yellow filter, which is kind to skin and darkens skies. The lower half of the
// strength takes the colour away, the upper half hardens the greys towards a high-contrast print.
#include "color.glsl"

uniform float effectValue;

vec4 QVBlackWhiteMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float grey = dot(straight(color), vec3(0.42, 0.5, 0.08));
    float colourless = min(2.0 * effectValue, 1.0), hard = max(2.0 * effectValue - 1.0, 0.0);
    // One smooth step, and a second one for the hard print.
    float curved = grey * grey * (3.0 - 2.0 * grey);
    float twice = curved * curved * (3.0 - 2.0 * curved);
    grey = mix(mix(grey, curved, 0.8), twice, 0.75 * hard);
    vec2 away = uv * 2.0 - 1.0;
    grey *= 1.0 - (0.16 + 0.12 * hard) * dot(away, away) * 0.5;
    vec3 silver = grey * vec3(1.0, 0.995, 0.98);
    return vec4(mix(color.rgb, silver * color.a, colourless), color.a);
}
