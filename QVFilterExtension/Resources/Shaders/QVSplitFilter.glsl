// The frame split into panels.
#include "borders.glsl"
#include "panels.glsl"

uniform float splitNumber;  // of panels along each side that is split
// 0: panels side by side, 1: one above the other, each a part of the frame; 2: both, each the whole frame.
selector int splitDirection;

vec4 QVSplitFilter(vec2 uv) {
    vec2 size = inputSize(0);
    if (splitDirection != 2) return readPixel(0, pixelAt(panelPlace(offBorders(uv), splitNumber, splitDirection) * size));
    // Four pixels stand for those that a pixel of a small frame covers.
    vec2 at = fract(offBorders(uv) * splitNumber) * size, tap = vec2(0.25 * splitNumber);
    vec4 sum = readPixel(0, pixelAt(at - tap)) + readPixel(0, pixelAt(at + tap));
    sum += readPixel(0, pixelAt(at + vec2(tap.x, -tap.y))) + readPixel(0, pixelAt(at + vec2(-tap.x, tap.y)));
    sum *= 0.25;
    return mix(sum, vec4(sum.a), panelLine(uv, vec2(splitNumber), size));
}
