// A tap from below on the beat: the picture hops twice and squashes softly where it lands. It is drawn as much larger
// as it moves, so that its border is never seen.
#include "motion.glsl"

uniform float effectValue;
uniform float progress;  // 0..1 through the beat, 0 at rest

// A hop from `start` to `end`: height 0..1.
float hop(float start, float end) {
    float at = clamp((progress - start) / (end - start), 0.0, 1.0);
    return 4.0 * at * (1.0 - at);
}

// Softness of a landing at `moment`: 0..1, soon over.
float landing(float moment, float lasts) {
    float at = clamp((progress - moment) / lasts, -0.25, 1.0);
    float near = at < 0.0 ? 1.0 + 4.0 * at : 1.0 - at;
    return near * near;
}

vec4 tap(vec2 place) { return readPixel(0, ivec2(place)); }

vec4 QVDapPEMTIFilter(vec2 uv) {
    float strength = effectValue * 0.22;
    float height = strength * max(hop(0.0, 0.46), 0.38 * hop(0.5, 0.82));
    float squash = 0.45 * strength * max(landing(0.46, 0.3), 0.45 * landing(0.82, 0.18));
    float stretch = 0.22 * height;
    // Rising it comes closer; squashed it widens more than it lowers.
    vec2 shrink = vec2(1.0 - height - 1.4 * squash + 0.5 * stretch, 1.0 - height - 0.35 * squash - stretch);
    vec2 place = 0.5 + (uv - 0.5) * shrink;
    place.y += 0.5 * height + 0.175 * squash;
    return MEAN_ALONG(tap, place * inputSize(0), vec2(0.0), 0.0);
}
