// The mean of eight taps on a line through the place.
uniform vec2 stepPixels;  // from tap to tap, y down
selector int nearest;     // 1: taps read the pixel that they fall on

vec4 tap(vec2 uv, float index) {
    vec2 offset = stepPixels * index;
    if (nearest == 1) return readPixel(0, pixelHere() + ivec2(offset + sign(offset) * 0.5));
    return readInput(0, uv + offset / inputSize(0));
}

vec4 QVMotionBlurMTIFilter(vec2 uv) {
    vec4 sum = tap(uv, -3.5) + tap(uv, -2.5) + tap(uv, -1.5) + tap(uv, -0.5);
    sum += tap(uv, 0.5) + tap(uv, 1.5) + tap(uv, 2.5) + tap(uv, 3.5);
    return sum / 8.0;
}
