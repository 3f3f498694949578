// Round dots of one colour each on a darker ground.
#include "borders.glsl"
#include "frame.glsl"

uniform float factor;  // distance of two dots, 1/1080 of the frame's shorter side

vec4 QVCircleMosaicMTIFilter(vec2 uv) {
    vec2 middle = 0.5 * outputSize();
    float side = max(factor * unitPixels(outputSize()), 2.0);
    vec2 place = uv * outputSize() - middle;
    vec2 center = (floor((offBorders(uv) * outputSize() - middle) * (1.0 / side)) + 0.5) * side;
    vec2 at = center + middle;
    float tap = 0.25 * side;
    vec4 mean = readPixel(0, pixelAt(at + vec2(-tap, -tap))) + readPixel(0, pixelAt(at + vec2(tap, -tap)));
    mean = 0.25 * (mean + readPixel(0, pixelAt(at + vec2(-tap, tap))) + readPixel(0, pixelAt(at + vec2(tap, tap))));
    float inside = clamp(0.46 * side - length(place - center) + 0.5, 0.0, 1.0);
    mean.rgb *= mix(0.4, 1.0, inside);
    return mean;
}
