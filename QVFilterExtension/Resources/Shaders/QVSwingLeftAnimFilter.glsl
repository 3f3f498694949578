// A pendulum hung above the frame: it is pushed to the left, slows down as it rises, and swings back. What lies outside
// the picture is its mirror image.
#include "motion.glsl"

uniform float effectValue;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open
selector int step;           // 0 out, 1 back

vec4 tap(vec2 place) { return readPixel(0, ivec2(mirroredPixels(place, inputSize(0)))); }

vec4 QVSwingLeftAnimFilter(vec2 uv) {
    const vec4 kRest = vec4(0.0, 0.0, 1.0, 0.0);
    vec4 raised = vec4(0.0, 0.0, 1.0 + 0.3 * effectValue, 0.42 * (0.5 + effectValue));
    vec4 from = step == 0 ? kRest : raised, to = step == 0 ? raised : kRest;
    Sight sight = sightOf(uv, inputSize(0), vec2(0.5, -0.3), mix(from, to, stepProgress), (to - from) * stepMotion);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
