// Pieces of the outgoing clip turn away; the incoming one lies beneath and comes to rest. Rings turn on and bring it
// along.
#include "borders.glsl"
#include "easing.glsl"
#include "transition.glsl"
#include "shutter.glsl"

uniform float progress;
uniform float ratio;  // of the frame, width to height
// 0 left and right half, 1 upper and lower half, each about a corner of the frame; 2 quarters, about their own middles;
// 3 rings from the middle outwards, 4 rings from the rim inwards
selector int type;

// Cosine and sine of an angle of up to 1.8 radians, to within 0.002.
vec2 turnBy(float angle) {
    float squared = angle * angle;
    vec2 series = 1.0 + squared * (vec2(-0.493881, -0.165632) + squared * vec2(0.035640, 0.007413));
    return vec2(series.x, angle * series.y);
}

// Anticlockwise.
vec2 turnedBack(vec2 away, vec2 turn) {
    return vec2(turn.x * away.x + turn.y * away.y, turn.x * away.y - turn.y * away.x);
}

vec4 incomingAt(vec2 place, vec2 size) { return readPixel(1, pixelAt(place * (inputSize(1) / size))); }

// The incoming picture, drawn in from a zoom, in the shadow of a piece that is `distance` away and has moved so far.
// The shadow ends softly at the border of the piece's part of the frame, `border` away.
vec4 beneath(vec2 place, vec2 size, float moment, float moved, float distance, float border) {
    float perShortSide = 1.0 / min(size.x, size.y);
    float shadow = max(1.0 - distance * 10.0 * perShortSide, 0.0);
    shadow *= min(4.0 - 4.0 * moved, 1.0) * min(border * 16.0 * perShortSide, 1.0);
    float rest = 1.0 - moment;
    vec2 from = place - (place - 0.5 * size) * (0.16 * rest * rest);
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
    vec2 from = corner + turnedBack(at - corner, turnBy(-1.8 * moved));
    vec2 outside = abs(from - vec2(0.25, 0.5) * frame) - vec2(0.25, 0.5) * frame;
    float distance = max(outside.x, outside.y);
    if (second) from = frame - from;
    if (type == 1) from = from.yx;
    return distance < 0.0 || x == 0.0 ? readPixel(0, pixelAt(from))
                                      : beneath(place, size, moment, moved, distance, 0.5 * frame.x - at.x);
}

vec4 quarters(vec2 place, vec2 size, float moment) {
    vec2 window = 0.5 * size, quarter = step(window, place), middle = (quarter + 0.5) * window;
    float late = quarter.y == 0.0 ? quarter.x : 3.0 - quarter.x;
    float moved = easeInOutCubic(clamp(moment * 1.3 - 0.1 * late, 0.0, 1.0));
    // Turning, a quarter shrinks so much that it never leaves its place.
    vec2 turn = turnBy(1.5707963 * moved);
    float rest = max(1.0 - moved, 1e-4);
    vec2 from = turnedBack(place - middle, turn) * ((turn.x + turn.y * max(ratio, 1.0 / ratio)) * (1.0 / rest));
    vec2 outside = abs(from) - 0.5 * window;
    float distance = max(outside.x, outside.y) * rest;
    vec2 inside = 0.5 * window - abs(place - middle);
    float border = min(inside.x, inside.y);
    return distance < 0.0 || moved == 0.0 ? readPixel(0, pixelAt(middle + from))
                                          : beneath(place, size, moment, moved, distance, border);
}

vec4 rings(vec2 place, vec2 size, float moment) {
    const float kRings = 6.0, kWait = 0.6;
    vec2 away = place - 0.5 * size;
    float radius = length(away) * (kRings / length(0.5 * size));
    float ring = min(floor(radius), kRings - 1.0);
    float rank = type == 4 ? kRings - 1.0 - ring : ring;
    float x = clamp(moment * (1.0 + kWait) - rank * (kWait / (kRings - 1.0)), 0.0, 1.0);
    float moved = x * x * (3.0 - 2.0 * x);
    bool incoming = moved >= 0.5;
    float angle = 2.1 * (incoming ? moved - 1.0 : moved);
    if (fract(ring * 0.5) > 0.25) angle = -angle;
    vec2 from = 0.5 * size + turnedBack(away, turnBy(angle));
    from = mirroredPlace(from, size);
    float depth = max(radius - ring - 0.7, 0.0) * moved * (1.0 - moved);
    vec4 color = incoming ? incomingAt(from, size) : readPixel(0, pixelAt(from));
    return color * vec4(vec3(1.0 - 5.0 * depth), 1.0);
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
    return mix(color, readHere(1), step(1.0, progress));
}
