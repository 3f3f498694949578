// A pendulum hung above the frame: the picture swings in from the left, comes to rest, and at the end swings out to the
// right. What lies outside it is its mirror image.
#include "borders.glsl"
#include "motion.glsl"

uniform float effectValue;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open
selector int step;           // 0 in, 1 out

vec4 tap(vec2 place) { return readPixel(0, pixelAt(place)); }

vec4 QVSwingRightAnimFilter(vec2 uv) {
    vec2 size = inputSize(0);
    const vec4 kRest = vec4(0.0, 0.0, 1.0, 0.0);
    float scale = 1.0 + 0.9 * effectValue, angle = -(0.08 + 0.12 * effectValue);
    vec4 before = vec4(0.0, 0.0, scale, -angle), after = vec4(0.0, 0.0, scale, angle);
    vec4 from = step == 0 ? before : kRest, to = step == 0 ? kRest : after;
    Sight sight = sightOf(uv, size, vec2(0.5, -0.3), mix(from, to, stepProgress), (to - from) * stepMotion);
    sight = mirroredSight(sight, size);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
