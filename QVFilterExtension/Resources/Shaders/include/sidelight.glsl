// Light that comes in over an edge of the frame.
#include "wave.glsl"

// From the edge `side` (0 left, 1 top, 2 right, 3 bottom) of a place: x across the frame from there, 0..1, y along the
// edge, 0..1.
vec2 fromSide(vec2 uv, int side) {
    vec2 turned = (side & 1) == 0 ? uv : uv.yx;
    return vec2(side < 2 ? turned.x : 1.0 - turned.x, turned.y);
}

// Light on film: what exceeds 1 burns in slowly, one channel after the other.
vec3 onFilm(vec3 light) { return 1.0 - exp2(-1.7 * light); }

// Brightness 0..1 at a distance from where it is brightest, in its own reach: a soft shoulder, and nothing left at 2.5.
float glowAt(float distance) {
    float near = max(1.0 - distance * distance * 0.16, 0.0);
    return near * near / (1.0 + 2.0 * distance * distance);
}
