// Mirrors glide in from all sides and fold the picture, which glides by sideways behind them with parted colours.
#include "frame.glsl"
#include "liquid.glsl"
#include "motion.glsl"

uniform float progress;   // eased
uniform float rgbWeight;  // 0..1, how far the colours part

vec4 clipAt(vec2 uv) {
    vec2 place = mirrorAtEdges(uv);
    return progress < 0.5 ? readInput(0, place) : readInput(1, place);
}

// What lies beyond the mirror, which stands `far` from the middle, is folded back over it.
vec2 folded(vec2 place, vec2 normal, float far) { return place - normal * (2.0 * max(dot(place, normal) - far, 0.0)); }

// Once through the three mirrors of a kaleidoscope.
vec2 foldedIntoTriangle(vec2 place, float far) {
    place = folded(place, vec2(0.0, 1.0), far);
    place = folded(place, vec2(-0.8660254, -0.5), far);
    return folded(place, vec2(0.8660254, -0.5), far);
}

vec4 QVKaleidoscopeMoveFilter(vec2 uv) {
    vec2 size = outputSize();
    // The corners at 1.
    float scale = 2.0 * inversesqrt(dot(size, size));
    vec2 place = (uv - 0.5) * size * scale;
    float far = 1.0 - 0.72 * swellOf(progress);
    place = foldedIntoTriangle(foldedIntoTriangle(foldedIntoTriangle(place, far), far), far);
    vec2 from = 0.5 + place / (size * scale);
    // Two widths take the mirrored picture back to where it was.
    from.x -= 2.0 * progress - (progress < 0.5 ? 0.0 : 2.0);
    vec2 parted = vec2(0.022 * rgbWeight, 0.0);
    // Some grain, so that edges do not show as three copies.
    from += parted * (0.4 * tapShift(pixelHere()));
    return spectrumOf(clipAt(from - parted), clipAt(from), clipAt(from + parted));
}
