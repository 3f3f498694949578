// The picture as it bounces in and out and is thrown past the viewer, out of the frame. What lies outside it is its
// mirror image, which follows it out.
#include "borders.glsl"
#include "motion.glsl"

uniform vec4 poseFrom;       // of the step: shift in widths and heights of the frame, scale, angle in turns
uniform vec4 poseTo;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open

vec4 tap(vec2 place) { return readPixel(0, pixelAt(place)); }

vec4 QVZoomThrowAnimFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec4 change = poseTo - poseFrom;
    Sight sight = sightOf(uv, size, vec2(0.5), poseFrom + change * stepProgress, change * stepMotion);
    sight = mirroredSight(sight, size);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
