// Random numbers for particles: four of a cell from one integer hash, in steps of a 256th, at less than half the cost
// of random3Of in "noise.glsl". `cell` and `seed` are whole numbers, fractions are cut off downwards.
vec4 particleDraw(vec2 cell, float seed) {
    uvec2 c = uvec2(ivec2(floor(cell)));
    uint bits = c.x * 0x9e3779b1u ^ (c.y + uint(int(seed)) * 0x85ebca77u) * 0xc2b2ae3du;
    bits = (bits ^ bits >> 15u) * 0x2c1b3c6du;
    bits = (bits ^ bits >> 13u) * 0x297a2d39u;
    return unpackUnorm4x8(bits ^ bits >> 16u);
}
