// The picture behind frosted glass.
#include "borders.glsl"
#include "frame.glsl"
#include "noise.glsl"

uniform float filterMixDistance;  // how far the glass scatters light, 1/1080 of the frame's shorter side

vec4 QVGlassBlurMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float unit = unitPixels(size), reach = filterMixDistance * unit;
    vec2 place = uv * size;
    // The grain of the glass: each grain scatters in another direction.
    vec2 grain = random2Of(floor(offBorders(uv) * size / max(unit * 2.0, 1.0)));
    float angle = grain.x * 6.2831853;
    vec2 a = vec2(cos(angle), sin(angle)) * reach, b = vec2(-a.y, a.x);
    float far = 0.5 + 0.5 * grain.y, middle = 0.7 * far, near = 0.35 * far;
    vec4 sum = readPixel(0, pixelAt(place + far * a)) + readPixel(0, pixelAt(place - far * a));
    sum += readPixel(0, pixelAt(place + far * b)) + readPixel(0, pixelAt(place - far * b));
    vec2 c = 0.7071 * (a + b), d = vec2(-c.y, c.x);
    sum += readPixel(0, pixelAt(place + middle * c)) + readPixel(0, pixelAt(place - middle * c));
    sum += readPixel(0, pixelAt(place + near * d)) + readPixel(0, pixelAt(place - near * d));
    return 0.125 * sum;
}
