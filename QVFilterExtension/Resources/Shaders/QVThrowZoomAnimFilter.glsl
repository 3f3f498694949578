// The picture as it is thrown into the frame, bounces and is zoomed into. What lies outside it is its mirror image: the
// frame is filled from the first moment, and the bounces show no border.
#include "borders.glsl"
#include "motion.glsl"

uniform vec4 poseFrom;       // of the step: shift in widths and heights of the frame, scale, angle in turns
uniform vec4 poseTo;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open

vec4 tap(vec2 place) { return readPixel(0, pixelAt(place)); }

vec4 QVThrowZoomAnimFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec4 change = poseTo - poseFrom;
    Sight sight = sightOf(uv, size, vec2(0.5), poseFrom + change * stepProgress, change * stepMotion);
    sight = mirroredSight(sight, size);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
