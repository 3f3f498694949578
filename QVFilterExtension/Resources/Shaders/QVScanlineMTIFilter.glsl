// The lines of a television tube.
#include "borders.glsl"
#include "color.glsl"
#include "wave.glsl"

uniform float effectValue;  // strength, 0..1
selector int level;         // 0 dark lines, 1 lines and coloured stripes

vec4 QVScanlineMTIFilter(vec2 uv) {
    vec2 size = outputSize(), place = uv * size;
    // Whole pixels, so that no moire shows: four at 360p, ten at 1080p.
    float line = 2.0 * nearestPixels(min(size.x, size.y) * (1.0 / 216.0));
    vec4 color = readHere(0);
    // Phosphor glows in purer colours than film.
    float grey = luma(color.rgb);
    color.rgb = clamp(mix(vec3(grey), color.rgb, 1.0 + 0.6 * effectValue), 0.0, color.a);
    float dark = 0.5 - 0.5 * wave(place.y / line - 0.5 / line);
    vec2 away = uv * 2.0 - 1.0;
    // The tube: beams that are thicker where they are bright, and less light in the corners.
    float beam = dark * (1.0 - 0.35 * grey);
    float tube = 1.0 - 0.36 * effectValue * dot(away, away) * (0.4 + 0.3 * dot(away, away));
    if (level == 0) {
        // What the dark lines take, the bright ones give back in part.
        color.rgb *= (1.0 + effectValue * (0.38 - 1.2 * beam)) * tube;
    } else {
        float stripe = 3.0 * nearestPixels(line * (1.0 / 3.0));
        vec3 phase = abs(fract(place.x / stripe - vec3(1.0, 3.0, 5.0) / 6.0 + 0.5) - 0.5);
        vec3 mask = clamp(1.6 - 4.2 * phase, 0.0, 1.0);
        color.rgb *= (1.0 + effectValue * (1.35 * mask - 0.32 - 0.85 * beam)) * tube;
    }
    color.rgb = clamp(color.rgb, 0.0, color.a);
    return color;
}
