// A tap from below on the beat: the picture hops, squashes softly where it lands, and hops once more. What it uncovers
// below and above is its mirror image.
#include "frame.glsl"

uniform float effectValue;  // 1: by a quarter of the frame's height
uniform float progress;     // 0..1 through the beat, 0 at rest

// Height 0..1 of a hop from `start` to `end`.
float hop(float start, float end) {
    float at = clamp((progress - start) / (end - start), 0.0, 1.0);
    return 4.0 * at * (1.0 - at);
}

// How far a landing at `moment` gives way: 0..1, soon there and gone after `lasts`.
float landing(float moment, float lasts) {
    float at = clamp((progress - moment) / lasts, 0.0, 1.0);
    float left = 1.0 - at;
    return 6.75 * at * left * left;
}

vec4 QVDapPEMTIFilter(vec2 uv) {
    float height = effectValue * 0.25 * max(hop(0.0, 0.42), 0.3 * hop(0.52, 0.8));
    float squash = effectValue * 0.2 * max(landing(0.42, 0.22), 0.4 * landing(0.8, 0.2));
    // It stands on the frame's lower edge, stretched while it is in the air and flat when it lands.
    vec2 scale = vec2(1.0 + 0.1 * height + squash, 1.0 + 0.5 * height - 0.7 * squash);
    vec2 foot = vec2(0.5, 1.0);
    return readInput(0, mirrorAtEdges(foot + (uv - foot + vec2(0.0, height)) / scale));
}
