// Film grain about middle grey, as a translucent layer.
#include "noise.glsl"

uniform int frame;
uniform float grainSize;  // of the finer grain, pixels
uniform float opacity;    // of the layer, 0..1

// Random values about 0 of the cell of a lattice.
vec3 grainOf(vec2 cell, float seed) { return random3Of(vec3(cell, seed)) - 0.5; }

// Smooth noise about 0 whose spread is the same at the lattice's points and between them, so that the lattice does
// not show.
vec3 grain(vec2 p, float seed) {
    vec2 cell = floor(p), t = smoothstep(0.0, 1.0, p - cell), s = 1.0 - t;
    vec4 weight = vec4(s.x * s.y, t.x * s.y, s.x * t.y, t.x * t.y);
    vec3 sum = grainOf(cell, seed) * weight.x + grainOf(cell + vec2(1.0, 0.0), seed) * weight.y;
    sum += grainOf(cell + vec2(0.0, 1.0), seed) * weight.z + grainOf(cell + 1.0, seed) * weight.w;
    return sum * inversesqrt(dot(weight, weight));
}

vec4 QVFilmNoisyMTIFilter(vec2 uv) {
    vec2 place = uv * outputSize() / grainSize;
    float seed = float(frame) * 2.0;
    // The coarser lattice is turned against the finer one.
    vec3 fine = grain(place, seed);
    vec3 coarse = grain(vec2(0.8 * place.x - 0.6 * place.y, 0.6 * place.x + 0.8 * place.y) / 2.27, seed + 1.0);
    vec3 sum = fine * 0.65 + coarse * 0.55;
    vec3 grey = vec3(0.5 + (sum.r + sum.g + sum.b) * 0.333);
    float alpha = readHere(0).a * opacity;
    return vec4(clamp(grey + sum * 0.15, 0.0, 1.0) * alpha, alpha);
}
