// Pieces of the outgoing clip turn away; the incoming one lies beneath and comes to rest. Rings turn on and bring it along.
#include "easing.glsl"
#include "motion.glsl"
#include "passage.glsl"
#include "shutter.glsl"

uniform float progress;
uniform float ratio;  // of the frame, width to height
// 0 left and right half, 1 upper and lower half, each about a corner of the frame; 2 quarters, about their own middles;
// 3 rings from the middle outwards, 4 rings from the rim inwards
selector int type;

vec2 turnedBack(vec2 away, float turns) {
    vec2 turn = turnOf(turns);
    return vec2(turn.x * away.x + turn.y * away.y, turn.x * away.y - turn.y * away.x);
}

vec4 incomingAt(vec2 place, vec2 size) { return readPixel(1, ivec2(place * (inputSize(1) / size))); }

// The incoming picture, drawn in from a zoom, in the shadow of what is `distance` away.
vec4 beneath(vec2 place, vec2 size, float moved, float distance) {
    float shadow = max(1.0 - distance * (10.0 / min(size.x, size.y)), 0.0) * min(4.0 - 4.0 * moved, 1.0);
    vec2 from = place - (place - 0.5 * size) * (0.14 * (1.0 - moved));
    return incomingAt(from, size) * vec4(vec3(1.0 - 0.6 * shadow * shadow), 1.0);
}

vec4 halves(vec2 place, vec2 size, float moment) {
    // The second half is the first one, seen upside down.
    vec2 at = type == 1 ? place.yx : place, frame = type == 1 ? size.yx : size;
    bool second = at.x >= 0.5 * frame.x;
    if (second) at = frame - at;
    float x = clamp(moment * 1.12 - (second ? 0.12 : 0.0), 0.0, 1.0);
    float moved = easeInOutCubic(x);
    vec2 corner = vec2(0.0, frame.y);
    vec2 from = corner + turnedBack(at - corner, -0.29 * moved);
    vec2 outside = abs(from - vec2(0.25, 0.5) * frame) - vec2(0.25, 0.5) * frame;
    float distance = max(outside.x, outside.y);
    if (second) from = frame - from;
    if (type == 1) from = from.yx;
    vec4 last = readPixel(0, ivec2(from)), next = beneath(place, size, moved, distance);
    return distance < 0.0 || x == 0.0 ? last : next;
}

vec4 quarters(vec2 place, vec2 size, float moment) {
    vec2 half_ = 0.5 * size, quarter = step(half_, place), middle = (quarter + 0.5) * half_;
    float late = quarter.y == 0.0 ? quarter.x : 3.0 - quarter.x;
    float moved = easeInOutCubic(clamp(moment * 1.3 - 0.1 * late, 0.0, 1.0));
    // Turning, a quarter shrinks so much that it never leaves its place.
    vec2 turn = turnOf(0.25 * moved);
    float shrink = (1.0 - moved) / (turn.x + turn.y * max(ratio, 1.0 / ratio));
    vec2 from = turnedBack(place - middle, 0.25 * moved) / max(shrink, 1e-4);
    vec2 outside = abs(from) - 0.5 * half_;
    float distance = max(outside.x, outside.y) * shrink;
    vec4 last = readPixel(0, ivec2(middle + from)), next = beneath(place, size, moved, distance);
    return distance < 0.0 || moved == 0.0 ? last : next;
}

vec4 rings(vec2 place, vec2 size, float moment) {
    const float kRings = 6.0, kWait = 0.6;
    vec2 away = place - 0.5 * size;
    float radius = length(away) * (kRings / length(0.5 * size));
    float ring = min(floor(radius), kRings - 1.0);
    float rank = type == 4 ? kRings - 1.0 - ring : ring;
    float moved = smootherstep(clamp(moment * (1.0 + kWait) - rank * (kWait / (kRings - 1.0)), 0.0, 1.0));
    bool incoming = moved >= 0.5;
    float turns = 0.34 * (incoming ? moved - 1.0 : moved);
    if (ring - 2.0 * floor(ring * 0.5) > 0.5) turns = -turns;
    vec2 from = 0.5 * size + turnedBack(away, turns);
    from = mirroredPlace(from, size);
    vec4 next = incomingAt(from, size), last = readPixel(0, ivec2(from));
    float depth = max(1.0 - (ring + 1.0 - radius) * 4.0, 0.0) * 4.0 * moved * (1.0 - moved);
    return (incoming ? next : last) * vec4(vec3(1.0 - 0.4 * depth * depth), 1.0);
}

vec4 scene(vec2 place, float moment) {
    vec2 size = outputSize();
    if (type == 2) return quarters(place, size, moment);
    if (type == 3 || type == 4) return rings(place, size, moment);
    return halves(place, size, moment);
}

vec4 QVRotateSliceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec4 color = MEAN_OVER_SHUTTER(scene, uv * size, progress, shutterAt(progress, 0.02), evenShift(pixelHere()), 0.0);
    return mix(color, readInput(1, uv), step(1.0, progress));
}
