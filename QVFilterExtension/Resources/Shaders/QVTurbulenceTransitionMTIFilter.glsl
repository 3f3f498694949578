// Currents that carry the picture along, three octaves of them, each stirred by the one before.
#include "coords.glsl"
#include "liquid.glsl"
#include "particles.glsl"

uniform float progress;       // eased
uniform float iTime;          // 0..10 over the transition
uniform float randomMaxWarp;  // 0..214.7; other currents for every number, up to a third stronger or weaker

// Four smooth random numbers, -0.5..0.5.
vec4 currents(vec2 place, float seed) {
    vec2 cell = floor(place), t = place - cell;
    t = t * t * (3.0 - 2.0 * t);
    vec4 top = mix(particleDraw(cell, seed), particleDraw(cell + vec2(1.0, 0.0), seed), t.x);
    vec4 bottom = mix(particleDraw(cell + vec2(0.0, 1.0), seed), particleDraw(cell + 1.0, seed), t.x);
    return mix(top, bottom, t.y) - 0.5;
}

vec4 sourceAt(vec2 place) { return readInput(0, mirrorRepeat(place)); }

vec4 QVTurbulenceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 place = uv * perShortSide;
    float seed = floor(randomMaxWarp * 8.0);
    vec4 wide = currents(place * 2.1 + vec2(0.10, -0.06) * iTime, seed);
    vec4 middle = currents(place * 4.7 + wide.zw * 2.4 - vec2(0.05, 0.13) * iTime, seed + 1.0);
    vec4 fine = currents(place * 10.3 + middle.zw * 2.4 + wide.xy * 3.0, seed + 2.0);
    float swell = smoothstep(0.0, 1.0, swellOf(progress));
    float strength = swell * (0.45 + 0.3 * fract(randomMaxWarp));
    vec2 carried = (wide.xy + 0.55 * middle.xy + 0.22 * fine.xy) * strength / perShortSide;
    return SPECTRUM(sourceAt, uv + carried, carried * 0.12);
}
