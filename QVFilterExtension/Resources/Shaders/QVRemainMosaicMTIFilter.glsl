// Square blocks, laid out from the middle of the frame, that shrink to single pixels.
#include "borders.glsl"

uniform float filterStrength;  // 0 the largest blocks, 1 the picture
uniform float maxDivideCount;  // of the largest blocks across the frame's shorter side

vec4 QVRemainMosaicMTIFilter(vec2 uv) {
    vec2 size = outputSize(), middle = floor(0.5 * size);
    float largest = min(size.x, size.y) / max(maxDivideCount, 1.0);
    float side = max(largest * (1.0 - filterStrength), 1.0);
    vec2 block = floor((offBorders(uv) * size - middle) * (1.0 / side)) * side + middle;
    // Five pixels spread over the block stand for all of it: one alone would flicker when the picture moves.
    float a = side * 0.2, b = side * 0.5, c = side * 0.8;
    vec4 sum = readPixel(0, pixelAt(block + vec2(a, a))) + readPixel(0, pixelAt(block + vec2(c, a)));
    sum += readPixel(0, pixelAt(block + vec2(a, c))) + readPixel(0, pixelAt(block + vec2(c, c)));
    return 0.2 * (sum + readPixel(0, pixelAt(block + vec2(b, b))));
}
