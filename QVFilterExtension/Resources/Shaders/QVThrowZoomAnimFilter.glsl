// The picture as it is thrown into the frame, bounces and is zoomed into. What lies outside it is its mirror image: the
// frame is filled from the first moment, and the bounces show no border.
#include "motion.glsl"

uniform vec4 poseFrom;       // of the step: shift in widths and heights of the frame, scale, angle
uniform vec4 poseTo;
uniform float stepProgress;  // 0..1 within the step, eased
uniform float stepMotion;    // change of it while the shutter is open

vec4 tap(vec2 place) { return readPixel(0, ivec2(mirroredPixels(place, inputSize(0)))); }

vec4 QVThrowZoomAnimFilter(vec2 uv) {
    vec4 way = poseTo - poseFrom;
    Sight sight = sightOf(uv, inputSize(0), vec2(0.5), poseFrom + way * stepProgress, way * stepMotion);
    return MEAN_ALONG(tap, sight.place, sight.way, tapShift(pixelHere()));
}
