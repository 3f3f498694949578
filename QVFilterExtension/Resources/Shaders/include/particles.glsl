// Random numbers for particles, and smooth noise: four of a cell from one integer hash, in steps of a 256th, at less than
// half the cost of random3Of in "noise.glsl".

const uint kAcross = 0x9e3779b1u, kDown = 0xc2b2ae3du;  // from cell to cell, before the bits are mixed

// Where a row of cells begins; other rows for every `seed`.
uint rowBits(uint row, float seed) { return (row + uint(int(seed)) * 0x85ebca77u) * kDown; }

vec4 drawOfBits(uint bits) {
    bits = (bits ^ bits >> 15u) * 0x2c1b3c6du;
    bits = (bits ^ bits >> 13u) * 0x297a2d39u;
    return unpackUnorm4x8(bits ^ bits >> 16u);
}

// Of a cell. `cell` and `seed` are whole numbers, fractions are cut off downwards.
vec4 particleDraw(vec2 cell, float seed) {
    uvec2 c = uvec2(ivec2(floor(cell)));
    return drawOfBits(c.x * kAcross ^ rowBits(c.y, seed));
}

// Of a cell and its neighbours to the right, below, and below to the right, as columns: cheaper than one by one.
mat4 cornerDraws(vec2 cell, float seed) {
    uvec2 c = uvec2(ivec2(cell));
    uint left = c.x * kAcross, right = left + kAcross, above = rowBits(c.y, seed), below = above + kDown;
    return mat4(drawOfBits(left ^ above), drawOfBits(right ^ above), drawOfBits(left ^ below), drawOfBits(right ^ below));
}

// What these four count at a place in the cell, 0..1 each way.
vec4 cornerWeights(vec2 t) {
    vec2 s = 1.0 - t;
    return vec4(s.x * s.y, t.x * s.y, s.x * t.y, t.x * t.y);
}

// Four smooth random values of a place, 0..1: draws at whole-numbered places, mixed in between.
vec4 smoothDraws(vec2 place, float seed) {
    vec2 cell = floor(place);
    return cornerDraws(cell, seed) * cornerWeights(smoothstep(0.0, 1.0, place - cell));
}
