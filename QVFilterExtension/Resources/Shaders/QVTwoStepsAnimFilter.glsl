// Leans into the picture, with a slight tilt, and back. What lies outside it is its mirror image.
#include "motion.glsl"

uniform float effectValue;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open
selector int step;           // 0 out, 1 back

vec4 tap(vec2 place) { return readPixel(0, ivec2(mirroredPixels(place, inputSize(0)))); }

vec4 QVTwoStepsAnimFilter(vec2 uv) {
    const vec4 kRest = vec4(0.0, 0.0, 1.0, 0.0);
    vec4 far = strengthened(vec4(0.0, 0.0, 1.5, 0.0), effectValue) + vec4(0.0, 0.0, 0.0, 0.12);
    vec4 from = step == 0 ? kRest : far, to = step == 0 ? far : kRest;
    Sight sight = sightOf(uv, inputSize(0), vec2(0.5), mix(from, to, stepProgress), (to - from) * stepMotion);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
