// The whole frame, small, among its mirror images.
#include "borders.glsl"
#include "coords.glsl"

selector int factor;  // 1: two by two frames, 2: three by three, 3: four by four

vec4 QVFullMirrorMTIFilter(vec2 uv) {
    float count = float(factor + 1);
    // Of three the middle one is upright, of two and four the first.
    vec2 at = mirrorRepeat(uv * count + (factor == 2 ? 1.0 : 0.0)) * inputSize(0), tap = vec2(0.25 * count);
    // Four pixels stand for those that a pixel of a small frame covers.
    vec4 sum = readPixel(0, pixelAt(at - tap)) + readPixel(0, pixelAt(at + tap));
    sum += readPixel(0, pixelAt(at + vec2(tap.x, -tap.y))) + readPixel(0, pixelAt(at + vec2(-tap.x, tap.y)));
    return 0.25 * sum;
}
