// A card tossed up from a table: it spins once and comes closer, higher and slower, then falls straight back into its
// place. What lies outside the picture is its mirror image, so that the frame is always filled.
#include "motion.glsl"

uniform float effectValue;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open
selector int step;           // 0 out, 1 back

vec4 tap(vec2 place) { return readPixel(0, ivec2(mirroredPixels(place, inputSize(0)))); }

vec4 QVSpinFallAnimFilter(vec2 uv) {
    const float kTurn = 6.2831853;
    vec4 high = strengthened(vec4(0.0, -0.32, 1.75, 0.0), effectValue);
    vec4 from = step == 0 ? vec4(0.0, 0.0, 1.0, 0.0) : high;
    vec4 to = step == 0 ? high + vec4(0.0, 0.0, 0.0, kTurn) : vec4(0.0, 0.0, 1.0, 0.0);
    Sight sight = sightOf(uv, inputSize(0), vec2(0.5), mix(from, to, stepProgress), (to - from) * stepMotion);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
