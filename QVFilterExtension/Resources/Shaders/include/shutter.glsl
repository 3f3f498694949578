// Whole scenes smeared by a shutter that is open while they move: a shader draws its scene at six moments and at six
// places within the pixel, which softens every edge too. A scene at rest stays as it is, pixel for pixel.
#include "borders.glsl"

// Shifts a pixel's moments by -0.5..0.5 of their distance. Neighbours lie far apart (a lattice of the plane's plastic
// number; Roberts, "The Unreasonable Effectiveness of Quasirandom Sequences", 2018), so that six moments seem many.
float evenShift(ivec2 pixel) {
    uint bits = uint(pixel.x) * 0xc13fa9a9u + uint(pixel.y) * 0x91e10da5u;
    return float(bits >> 8u) * (1.0 / 16777216.0) - 0.5;
}

// How far the shutter opens at a progress that is at rest at both ends: nothing there, `widest` in the middle.
float shutterAt(float progress, float widest) { return widest * 4.0 * progress * (1.0 - progress); }

// What a tap adds to the colour: early moments rather red, late ones rather blue, as at the rim of a lens. `x` is the
// moment, -1..1. Red, green, blue and alpha add up to 1 over the six of them.
vec4 fringe(float x, float amount) { return (1.0 / 6.0) * vec4(1.0 - amount * x, 1.0, 1.0 + amount * x, 1.0); }

// The mean of scene(place, moment), a colour at a place in pixels, with the shutter open from the moment `shut` before
// `progress` to `shut` after it; `shift` is evenShift of the pixel.
#define MEAN_OVER_SHUTTER(scene, place, progress, shut, shift, colors) \
    meanOfMoments(scene, (place) + kAside, (progress) + (shut) * (shift) * 0.333333, (shut) * 0.333333, colors)
#define meanOfMoments(scene, place, middle, step, colors) \
    (scene((place) + vec2(-0.08, 0.25), (middle) - 2.5 * (step)) * fringe(-1.0, colors) + \
     scene((place) + vec2(0.25, 0.42), (middle) - 1.5 * (step)) * fringe(-0.6, colors) + \
     scene((place) + vec2(-0.42, -0.25), (middle) - 0.5 * (step)) * fringe(-0.2, colors) + \
     scene((place) + vec2(0.42, -0.08), (middle) + 0.5 * (step)) * fringe(0.2, colors) + \
     scene((place) + vec2(-0.25, 0.08), (middle) + 1.5 * (step)) * fringe(0.6, colors) + \
     scene((place) + vec2(0.08, -0.42), (middle) + 2.5 * (step)) * fringe(1.0, colors))

// A colour whose fringes do not outshine its alpha.
vec4 withinAlpha(vec4 color) { return vec4(min(color.rgb, color.aaa), color.a); }
