// Part of the frame and its reflections.
#include "borders.glsl"

// 2: the left half, reflected. 4: the top left quarter, reflected both ways. 5: five strips side by side, the middle
// one as it is, each next one the reflection of its neighbour.
selector int factor;

vec4 QVMirrorMTIFilter(vec2 uv) {
    if (factor == 5) {
        // A triangle wave: forwards through the middle strip, backwards through the next.
        float inside = abs(mod((uv.x - 0.5) * 5.0 - 0.5, 2.0) - 1.0) - 0.5;
        return readPixel(0, pixelAt(vec2(0.5 + inside * 0.2, uv.y) * inputSize(0)));
    }
    ivec2 pixel = pixelHere(), mirrored = ivec2(inputSize(0)) - 1 - pixel;
    pixel.x = min(pixel.x, mirrored.x);
    if (factor == 4) pixel.y = min(pixel.y, mirrored.y);
    return readPixel(0, pixel);
}
