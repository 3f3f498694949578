// A sideways smear.
#include "borders.glsl"
#include "particles.glsl"

uniform float filterMixDistance;  // its length, 1/720 of the frame's shorter side

vec4 QVRemainMBlurMTIFilter(vec2 uv) {
    vec2 size = inputSize(0), place = uv * size;
    float spacing = filterMixDistance * min(size.x, size.y) / 7200.0;
    // Each pixel begins its taps elsewhere, so that fine grain takes the place of a comb of copies.
    float first = (particleDraw(place, 5.0).x - 5.0) * spacing;
#define TAP(i) readPixel(0, pixelAt(place + vec2(first + float(i) * spacing, 0.0)))
    vec4 sum = TAP(0) + TAP(1) + TAP(2) + TAP(3) + TAP(4);
    sum += TAP(5) + TAP(6) + TAP(7) + TAP(8) + TAP(9);
    return 0.1 * sum;
}
