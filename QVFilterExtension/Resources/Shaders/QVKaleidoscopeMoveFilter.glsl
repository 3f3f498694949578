// Mirrors glide in from all sides and fold the picture, which glides by sideways behind them with parted colours.
#include "coords.glsl"
#include "liquid.glsl"

uniform float progress;   // eased
uniform float rgbWeight;  // 0..1, how far the colours part

vec4 clipAt(vec2 uv) {
    vec2 place = mirrorRepeat(uv);
    return progress < 0.5 ? readInput(0, place) : readInput(1, place);
}

// What lies beyond the mirror, which stands `far` from the middle, is folded back over it.
vec2 folded(vec2 place, vec2 normal, float far) { return place - normal * (2.0 * max(dot(place, normal) - far, 0.0)); }

vec4 QVKaleidoscopeMoveFilter(vec2 uv) {
    vec2 size = outputSize();
    // The corners at 1.
    float scale = 2.0 * inversesqrt(dot(size, size));
    vec2 place = (uv - 0.5) * size * scale;
    float far = 1.0 - 0.9 * swellOf(progress);
    place = folded(place, vec2(1.0, 0.0), far);
    place = folded(place, vec2(-0.5, 0.8660254), far);
    place = folded(place, vec2(-0.5, -0.8660254), far);
    place = folded(place, vec2(0.5, 0.8660254), far);
    place = folded(place, vec2(0.5, -0.8660254), far);
    place = folded(place, vec2(-1.0, 0.0), far);
    vec2 from = 0.5 + place / (size * scale) - vec2(2.0 * progress, 0.0);
    vec2 parted = vec2(0.025 * rgbWeight, 0.0);
    return partedColors(clipAt(from - parted), clipAt(from), clipAt(from + parted));
}
