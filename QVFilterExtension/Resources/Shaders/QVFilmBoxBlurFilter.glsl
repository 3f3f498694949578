// A cross-fade under a box blur, four times as wide as high. Inputs: outgoing, incoming.
#include "borders.glsl"
#include "frame.glsl"
#include "motion.glsl"

uniform float progress;

#define TAP(x, y) \
    (readPixel(0, pixelAt(place + reach * vec2(x, y))) * before + \
     readPixel(1, pixelAt((place + reach * vec2(x, y)) * toSecond)) * progress)

vec4 QVFilmBoxBlurFilter(vec2 uv) {
    vec2 size = outputSize(), toSecond = inputSize(1) / size;
    float before = 1.0 - progress, width = 4.0 * progress * before;
    vec2 reach = width * vec2(72.0, 18.0) * unitPixels(size);  // from the box's middle to its sides, pixels
    float shift = tapShift(pixelHere());
    vec2 place = uv * size + reach * vec2(shift * 0.2222, fract(shift * 7.0) * 0.6667 - 0.3333);
    vec4 sum = TAP(-0.889, 0.0) + TAP(-0.667, -0.667) + TAP(-0.444, 0.667) + TAP(-0.222, 0.0) + TAP(0.0, -0.667) +
               TAP(0.222, 0.667) + TAP(0.444, 0.0) + TAP(0.667, -0.667) + TAP(0.889, 0.667);
    vec4 still = mix(readHere(0), readHere(1), progress);
    return mix(still, sum * (1.0 / 9.0), step(1e-4, width));
}
