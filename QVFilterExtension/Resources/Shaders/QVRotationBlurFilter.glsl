// Taps along the arc that a pixel of a turning picture moves over.
#include "borders.glsl"
#include "liquid.glsl"
#include "motion.glsl"

uniform float progress;  // linear

vec4 tapAt(vec2 away, float angle) {
    // The arc to the second order.
    vec2 size = outputSize();
    vec2 place = 0.5 * size + away * (1.0 - 0.5 * angle * angle) + vec2(-away.y, away.x) * angle;
    return readPixel(0, pixelAt(mirroredPlace(place, size)));
}

vec4 QVRotationBlurFilter(vec2 uv) {
    vec2 away = (uv - 0.5) * outputSize();
    float swell = swellOf(progress);
    float step = 0.038 * swell * swell * swell;
    float first = step * tapShift(pixelHere());
    vec4 sum = tapAt(away, first - 5.0 * step) + tapAt(away, first - 4.0 * step) + tapAt(away, first - 3.0 * step);
    sum += tapAt(away, first - 2.0 * step) + tapAt(away, first - step) + tapAt(away, first);
    sum += tapAt(away, first + step) + tapAt(away, first + 2.0 * step) + tapAt(away, first + 3.0 * step);
    sum += tapAt(away, first + 4.0 * step) + tapAt(away, first + 5.0 * step);
    return sum / 11.0;
}
