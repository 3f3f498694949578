// Small copies of the frame around one in its middle.
#include "borders.glsl"

uniform float splitNumber;  // of copies along each side, those that the edge cuts counted in part

vec4 QVAICopySplitFilter(vec2 uv) {
    vec2 at = fract((offBorders(uv) - 0.5) * splitNumber + 0.5) * inputSize(0), tap = vec2(0.25 * splitNumber);
    // Four pixels stand for those that a pixel of a small copy covers.
    vec4 sum = readPixel(0, pixelAt(at - tap)) + readPixel(0, pixelAt(at + tap));
    sum += readPixel(0, pixelAt(at + vec2(tap.x, -tap.y))) + readPixel(0, pixelAt(at + vec2(-tap.x, tap.y)));
    return 0.25 * sum;
}
