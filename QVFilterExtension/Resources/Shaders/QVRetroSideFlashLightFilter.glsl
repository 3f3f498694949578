// Light along both sides, through the holes of a film's perforation.
#include "exposure.glsl"
#include "sidelight.glsl"

uniform float strength;  // 0..1

vec4 QVRetroSideFlashLightFilter(vec2 uv) {
    vec2 size = outputSize();
    float side = min(size.x, size.y);
    float depth = min(uv.x, 1.0 - uv.x) * size.x / side;
    // Four holes a short side.
    float hole = 0.5 + 0.5 * wave(uv.y * size.y / side * 4.0);
    float patches = hole * hole * (3.0 - 2.0 * hole);
    float veil = glowAt(depth * 5.5), spill = glowAt(depth * 11.0) * patches, core = glowAt(depth * 24.0) * patches;
    vec3 light = vec3(0.62, 0.20, 0.06) * veil + vec3(0.80, 0.42, 0.14) * spill + vec3(0.7, 0.66, 0.5) * core;
    light = onFilm(light * strength);
    return lightOver(overexposed(readHere(0), 1.0 + 0.6 * light), light);
}
