// A splice runs through the gate: both frames shine through it for a moment, and the lamp burns through from the side.
// Inputs: outgoing, incoming.
#include "exposure.glsl"
#include "wave.glsl"

uniform float progress;

vec4 QVFilmRadiusTransitionMTIFilter(vec2 uv) {
    float after = smoothstep(0.38, 0.66, progress);
    vec4 before = readHere(0), next = readHere(1);
    // Light adds up, codes do not: the mean is taken of their squares.
    vec4 picture = sqrt(mix(before * before, next * next, after));
    picture.a = mix(before.a, next.a, after);

    // 0 at both ends, 1 where the film jams.
    float from = progress - 0.54;
    float jam = max(1.0 - from * from / mix(0.2, 0.09, step(0.0, from)), 0.0);
    jam *= jam * smoothstep(0.0, 0.12, progress) * smoothstep(1.0, 0.88, progress);

    vec2 fromCenter = uv - 0.5;
    float r2 = dot(fromCenter, fromCenter) * 2.0;
    float flicker = 1.0 + jam * 0.1 * wave(progress * 23.0);
    picture.rgb *= (1.0 - jam * 0.55 * r2 * r2) * flicker;

    // The burn creeps in from the right, yellow within orange within red, with a ragged front.
    float front = uv.x + 0.05 * wave(uv.y * 1.3 + progress * 2.0) + 0.025 * wave(uv.y * 3.1 - progress * 3.0);
    vec3 reach = jam * vec3(0.95, 0.66, 0.42);
    vec3 burn = clamp((front - 1.12 + reach) * vec3(1.7, 2.0, 2.3), 0.0, 1.0);
    vec3 light = burn * burn * vec3(1.0, 0.78, 0.5) + jam * vec3(0.05, 0.025, 0.008);
    return clamp(lightOver(picture, light * jam), 0.0, 1.0);
}
