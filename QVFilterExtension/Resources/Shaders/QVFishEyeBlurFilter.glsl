// Taps along the way that a pixel moves over when the picture rolls by behind a lens: sideways, and outwards more the
// farther out it is.
#include "borders.glsl"
#include "liquid.glsl"
#include "motion.glsl"

uniform float progress;  // linear

vec4 tapAt(vec2 place) { return readPixel(0, pixelAt(mirroredPlace(place, outputSize()))); }

vec4 QVFishEyeBlurFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = uv - 0.5;
    float swell = swellOf(progress);
    vec2 way = (vec2(0.022, 0.0) + away * (0.08 * dot(away, away))) * size * (swell * (2.0 * swell - swell * swell));
    vec2 place = uv * size + way * tapShift(pixelHere());
    vec4 sum = tapAt(place - 3.0 * way) + tapAt(place - 2.0 * way) + tapAt(place - way) + tapAt(place);
    sum += tapAt(place + way) + tapAt(place + 2.0 * way) + tapAt(place + 3.0 * way);
    return sum / 7.0;
}
