// Square blocks of one colour, laid out from the middle of the frame.
#include "borders.glsl"
#include "frame.glsl"

uniform float factor;  // side of a block, 1/1080 of the frame's shorter side

vec4 QVMosaicMTIFilter(vec2 uv) {
    vec2 middle = 0.5 * outputSize();
    float side = nearestPixels(factor * unitPixels(outputSize()));
    vec2 block = floor((offBorders(uv) * outputSize() - middle) * (1.0 / side)) * side + middle;
    // Five pixels spread over the block stand for all of it: one alone would flicker when the picture moves.
    float a = side * 0.2, b = side * 0.5, c = side * 0.8;
    vec4 sum = readPixel(0, pixelAt(block + vec2(a, a))) + readPixel(0, pixelAt(block + vec2(c, a)));
    sum += readPixel(0, pixelAt(block + vec2(a, c))) + readPixel(0, pixelAt(block + vec2(c, c)));
    return 0.2 * (sum + readPixel(0, pixelAt(block + vec2(b, b))));
}
