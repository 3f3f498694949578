// The lines of a television tube.
#include "borders.glsl"
#include "wave.glsl"

uniform float effectValue;  // strength, 0..1
selector int level;         // 0 dark lines, 1 lines and coloured stripes

vec4 QVScanlineMTIFilter(vec2 uv) {
    vec2 place = uv * outputSize();
    // Whole pixels, so that no moire shows: two at 360p, eight at 1080p.
    float line = 2.0 * nearestPixels(min(outputSize().x, outputSize().y) * (1.0 / 270.0));
    vec4 color = readHere(0);
    float dark = 0.5 - 0.5 * wave(place.y / line - 0.25);
    if (level == 0) {
        // What the dark lines take, the bright ones give back in part.
        color.rgb *= 1.0 + effectValue * (0.18 - 0.7 * dark);
    } else {
        float stripe = 3.0 * nearestPixels(line * (1.0 / 3.0));
        vec3 phase = abs(fract(place.x / stripe - vec3(1.0, 3.0, 5.0) / 6.0 + 0.5) - 0.5);
        vec3 mask = clamp(1.6 - 4.2 * phase, 0.0, 1.0);
        color.rgb *= 1.0 + effectValue * (mask * (1.25 - 0.5 * dark) - 0.45 - 0.25 * dark);
    }
    color.rgb = clamp(color.rgb, 0.0, color.a);
    return color;
}
