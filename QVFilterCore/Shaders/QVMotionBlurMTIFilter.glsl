// The mean of even taps on a line through the place.
uniform vec2 stepPixels;  // from tap to tap, y down
selector int coarse;      // 0: 8 interpolated taps; 1: 16 taps that read the pixel they fall on

vec4 fineTap(vec2 uv, float index) { return readInput(0, uv + stepPixels * index / inputSize(0)); }

vec4 coarsePair(float index) {
    vec2 offset = stepPixels * index;
    ivec2 pixels = ivec2(offset + sign(offset) * 0.5);
    return readPixel(0, pixelHere() + pixels) + readPixel(0, pixelHere() - pixels);
}

vec4 QVMotionBlurMTIFilter(vec2 uv) {
    if (coarse == 1) {
        vec4 sum = coarsePair(0.5) + coarsePair(1.5) + coarsePair(2.5) + coarsePair(3.5);
        sum += coarsePair(4.5) + coarsePair(5.5) + coarsePair(6.5) + coarsePair(7.5);
        return sum / 16.0;
    }
    vec4 sum = fineTap(uv, -3.5) + fineTap(uv, -2.5) + fineTap(uv, -1.5) + fineTap(uv, -0.5);
    sum += fineTap(uv, 0.5) + fineTap(uv, 1.5) + fineTap(uv, 2.5) + fineTap(uv, 3.5);
    return sum / 8.0;
}
