// The picture falls into the frame from above, slows down and lies still; at the end it spins away towards the viewer.
// What lies outside it is its mirror image, so that the frame is always filled.
#include "borders.glsl"
#include "motion.glsl"

uniform float effectValue;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open
selector int step;           // 0 in, 1 out

vec4 tap(vec2 place) { return readPixel(0, pixelAt(place)); }

vec4 QVFallSpinAnimFilter(vec2 uv) {
    vec2 size = inputSize(0);
    const vec4 kRest = vec4(0.0, 0.0, 1.0, 0.0);
    vec4 before = vec4(0.0, -1.0, 1.0 + 0.7 * effectValue, -0.02 - 0.04 * effectValue);
    vec4 after = strengthened(vec4(0.0, 0.0, 2.0, 1.0), effectValue);
    vec4 from = step == 0 ? before : kRest, to = step == 0 ? kRest : after;
    Sight sight = sightOf(uv, size, vec2(0.5), mix(from, to, stepProgress), (to - from) * stepMotion);
    sight = mirroredSight(sight, size);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
