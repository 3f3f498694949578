// Film grain as smooth noise, at half the cost of the film grain filter's.
#include "frame.glsl"
#include "particles.glsl"

// Four channels about 0, mostly within 0.5, of grains as large as the unit of `place`. The spread is the same at the
// lattice's points and between them, so that the lattice does not show. `seed` is a whole number.
vec4 grainAt(vec2 place, float seed) {
    vec2 cell = floor(place);
    vec4 weight = cornerWeights(smoothstep(0.0, 1.0, place - cell));
    return (cornerDraws(cell, seed) * weight - 0.5) * inversesqrt(dot(weight, weight));
}

// Lattice place of a pixel for grains of `size` 1/1080 of the frame's shorter side, at least a pixel large.
vec2 grainPlace(vec2 pixel, vec2 frame, float size) { return pixel / max(size * unitPixels(frame), 1.0); }
