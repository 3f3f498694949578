// Random numbers and noise from integer hashes: the same on every device.

// A permuted congruential generator of three words (Jarzynski, Olano, "Hash Functions for GPU Rendering", 2020).
uvec3 hash3(uvec3 v) {
    v = v * 1664525u + 1013904223u;
    v.x += v.y * v.z;
    v.y += v.z * v.x;
    v.z += v.x * v.y;
    v ^= v >> 16u;
    v.x += v.y * v.z;
    v.y += v.z * v.x;
    v.z += v.x * v.y;
    return v;
}

vec3 unitFloats(uvec3 bits) { return vec3(bits >> 8u) * (1.0 / 16777216.0); }

// Three random numbers 0..1 of a cell: whole numbers, fractions are cut off downwards.
vec3 random3Of(vec3 cell) { return unitFloats(hash3(uvec3(ivec3(floor(cell))))); }
vec3 random3Of(vec2 cell) { return random3Of(vec3(cell, 0.0)); }
vec2 random2Of(vec3 cell) { return random3Of(cell).xy; }
vec2 random2Of(vec2 cell) { return random3Of(cell).xy; }
float randomOf(vec3 cell) { return random3Of(cell).x; }
float randomOf(vec2 cell) { return random3Of(cell).x; }
float randomOf(float cell) { return random3Of(vec3(cell, 0.0, 0.0)).x; }

// Smooth random values 0..1, one for each whole-numbered point; `seed` is a whole number.
float valueNoise(vec2 p, float seed) {
    vec2 cell = floor(p), t = smoothstep(0.0, 1.0, p - cell);
    float a = randomOf(vec3(cell, seed)), b = randomOf(vec3(cell + vec2(1.0, 0.0), seed));
    float c = randomOf(vec3(cell + vec2(0.0, 1.0), seed)), d = randomOf(vec3(cell + 1.0, seed));
    return mix(mix(a, b, t.x), mix(c, d, t.x), t.y);
}
float valueNoise(vec2 p) { return valueNoise(p, 0.0); }

float noiseSlope(vec2 cell, float seed, vec2 away) {
    return dot(random2Of(vec3(cell, seed)) * 2.0 - 1.0, away);
}

// Gradient noise, about -0.7..0.7, 0 at whole-numbered points; finer grained than valueNoise.
float gradientNoise(vec2 p, float seed) {
    vec2 cell = floor(p), f = p - cell, t = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float a = noiseSlope(cell, seed, f), b = noiseSlope(cell + vec2(1.0, 0.0), seed, f - vec2(1.0, 0.0));
    float c = noiseSlope(cell + vec2(0.0, 1.0), seed, f - vec2(0.0, 1.0));
    float d = noiseSlope(cell + 1.0, seed, f - 1.0);
    return mix(mix(a, b, t.x), mix(c, d, t.x), t.y);
}
float gradientNoise(vec2 p) { return gradientNoise(p, 0.0); }

// Four octaves of value noise, 0..1: clouds, smoke, paper.
float fractalNoise(vec2 p, float seed) {
    float sum = valueNoise(p, seed) * 8.0 + valueNoise(p * 2.03 + 17.1, seed) * 4.0;
    sum += valueNoise(p * 4.09 + 41.7, seed) * 2.0 + valueNoise(p * 8.21 + 83.3, seed);
    return sum / 15.0;
}
float fractalNoise(vec2 p) { return fractalNoise(p, 0.0); }
