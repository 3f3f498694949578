// What the liquid transitions have in common.
#include "transition.glsl"
#include "wave.glsl"

// From 0 at rest to 1 in the middle of a transition and back.
float swellOf(float progress) { return 1.0 - abs(2.0 * progress - 1.0); }

// Four waves, -0.3..0.3, about one to a unit, other ones for every whole `seed`. Stirred by one another they look like
// the currents of a liquid, at a third of the cost of noise.
vec4 currents(vec2 place, float seed) {
    vec4 turns = place.x * vec4(0.61, -0.33, 0.49, 0.17) + place.y * vec4(0.22, 0.58, -0.45, 0.67);
    return 0.3 * wave(turns + seed * vec4(0.318, 0.731, 0.173, 0.557));
}

// A pixel whose red, green and blue come from three places. Its alpha covers all three.
vec4 partedColors(vec4 red, vec4 green, vec4 blue) {
    return vec4(red.r, green.g, blue.b, max(max(red.a, green.a), blue.a));
}

// The colours of three reads along a way: red leads, blue trails, and each is blurred.
vec4 spectrumOf(vec4 a, vec4 b, vec4 c) {
    return partedColors(0.5 * (a + b), 0.25 * (a + c) + 0.5 * b, 0.5 * (b + c));
}

// The same of five reads of tap(vec2) along `way` about `place`.
#define SPECTRUM(tap, place, way) \
    spectrumOf(tap((place) - (way)), tap((place) - (way) * 0.5), tap(place), tap((place) + (way) * 0.5), \
               tap((place) + (way)))
vec4 spectrumOf(vec4 a, vec4 b, vec4 c, vec4 d, vec4 e) {
    return partedColors(0.25 * (a + c) + 0.5 * b, 0.25 * (b + d) + 0.5 * c, 0.25 * (c + e) + 0.5 * d);
}
