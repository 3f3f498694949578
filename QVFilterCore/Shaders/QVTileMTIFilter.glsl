// The input repeated from the top left.
vec4 QVTileMTIFilter(vec2 uv) {
    return readPixel(0, pixelHere() % ivec2(inputSize(0)));
}
