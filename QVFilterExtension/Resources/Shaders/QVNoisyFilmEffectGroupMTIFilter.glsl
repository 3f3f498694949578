// Pushed film in a worn camera: it weaves in the gate, the exposure flickers, and clouds of dye mottle the shadows. Grain
// and tones come after it.
#include "color.glsl"
#include "film.glsl"
#include "noise.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVNoisyFilmEffectGroupMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float side = min(size.x, size.y);
    vec3 projector = projectorState(iTime);
    vec2 reach = 0.004 * effectValue * side / size;
    vec4 color = readInput(0, 0.5 + (uv - 0.5) * (1.0 - 2.0 * reach) + projector.xy * reach);

    float frame = timeSlot(iTime, 24.0);
    vec2 place = uv * size / side;
    float coarse = valueNoise(place * 38.0, frame) - 0.5, fine = valueNoise(place.yx * 97.0, frame + 70001.0) - 0.5;
    float shadow = color.a - luma(color.rgb);
    vec3 clouds = vec3(coarse, 0.5 * (fine - coarse), -fine) * 0.14 * effectValue * shadow;
    vec3 rgb = color.rgb * (1.0 + 0.05 * effectValue * projector.z) + clouds;

    vec2 fromCenter = uv * 2.0 - 1.0;
    float r2 = dot(fromCenter, fromCenter) * 0.5;
    rgb *= 1.0 - 0.45 * effectValue * r2 * r2;
    return vec4(clamp(rgb, 0.0, color.a), color.a);
}
