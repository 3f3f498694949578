// Strips of the incoming clip slide over the outgoing one, which gives way a little and lies in their shadow.
#include "borders.glsl"
#include "easing.glsl"
#include "transition.glsl"
#include "shutter.glsl"

uniform float progress;  // eased
uniform int count;       // of strips, at least 1
uniform float slope;     // lean of the cuts: pixels sideways for each pixel along them
// 0 columns from above and below by turns, 1 columns from above one after the other, 2 rows from the left and the right
// by turns, 3 rows from the left one after the other, 4 columns by turns from the middle outwards
selector int type;

bool inRows() { return type == 2 || type == 3; }

vec4 scene(vec2 place, float moment) {
    vec2 size = outputSize();
    // x across the strips, y along them.
    vec2 at = inRows() ? place.yx : place, frame = inRows() ? size.yx : size;
    float strips = max(float(count), 1.0);
    float strip = floor((at.x + slope * (at.y - 0.5 * frame.y)) * (strips / frame.x));
    // The last strip waits for as long as `wait` strips take to move.
    float rank = strip * (1.0 / max(strips - 1.0, 1.0)), wait = type == 1 || type == 3 ? 0.8 : 0.3;
    if (type == 4) {
        rank = floor(abs(strip + 0.5 - 0.5 * strips)) * (1.0 / max(floor(0.5 * strips - 0.5), 1.0));
        wait = 0.8;
    }
    float x = clamp(moment * (1.0 + wait) - wait * clamp(rank, 0.0, 1.0), 0.0, 1.0);
    float part = x * x * (3.0 - 2.0 * x), moved = part * frame.y;
    // A strip comes out of nothing, and so goes what it leaves uncovered: a sliver would flash.
    float begun = min(part * 9.0, 1.0), left = min((1.0 - part) * 9.0, 1.0);
    // Strips from below or from the right are those from above, mirrored.
    bool fromEnd = type != 1 && type != 3 && fract(strip * 0.5) > 0.25;
    float along = fromEnd ? frame.y - at.y : at.y;
    float beyond = along - moved;  // of the strip's edge
    float inStrip = beyond + frame.y, under = along - 0.15 * moved;
    if (fromEnd) inStrip = frame.y - inStrip, under = frame.y - under;
    vec2 from = vec2(at.x - slope * (inStrip - at.y), inStrip), below = vec2(at.x, under);
    from = mirroredPlace(from, frame);
    if (inRows()) from = from.yx, below = below.yx;
    vec4 next = readPixel(1, pixelAt(from * (inputSize(1) / size)));
    float shadow = max(1.0 - max(beyond, 0.0) * (11.0 / min(size.x, size.y)), 0.0) * begun * left;
    vec4 last = readPixel(0, pixelAt(below)) * vec4(vec3(1.0 - 0.55 * shadow * shadow), 1.0);
    return mix(last, next, beyond < 0.0 ? begun : 1.0 - left);
}

vec4 QVSliceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float moment = relaxed(progress), shut = shutterAt(moment, 0.025);
    vec4 color = MEAN_OVER_SHUTTER(scene, uv * size, moment, shut, evenShift(pixelHere()), 0.0);
    return mix(color, readHere(1), settled(progress, size));
}
