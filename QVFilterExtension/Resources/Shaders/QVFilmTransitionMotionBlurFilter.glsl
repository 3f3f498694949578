// The mean of the frame along a vertical line.
#include "borders.glsl"
#include "frame.glsl"
#include "motion.glsl"

uniform float radius;  // half the line's length, 1/1080 of the frame's shorter side

#define TAP(k) readPixel(0, pixelAt(vec2(x, mirrorAtEdges(vec2(0.0, y + (k) * between)).y * size.y)))

vec4 QVFilmTransitionMotionBlurFilter(vec2 uv) {
    vec2 size = outputSize();
    float between = radius * unitPixels(size) * (2.0 / 13.0) / size.y;
    float x = uv.x * size.x, y = uv.y + between * tapShift(pixelHere());
    return (TAP(0.0) + TAP(1.0) + TAP(2.0) + TAP(3.0) + TAP(4.0) + TAP(5.0) + TAP(6.0) + TAP(-1.0) + TAP(-2.0) +
            TAP(-3.0) + TAP(-4.0) + TAP(-5.0) + TAP(-6.0)) * (1.0 / 13.0);
}
