// Half the size, each pixel the mean of 4 x 4 with the weights 1 3 3 1, with one pixel more on every side: the borders
// of the result then continue exactly what the input's borders do. By fetched pixels, for processors.
vec4 halveRow(ivec2 first) {
    return readPixel(0, first) + readPixel(0, first + ivec2(3, 0)) +
           3.0 * (readPixel(0, first + ivec2(1, 0)) + readPixel(0, first + ivec2(2, 0)));
}

vec4 MTIHalve(vec2 uv) {
    ivec2 first = 2 * pixelHere() - 3;
    return (halveRow(first) + halveRow(first + ivec2(0, 3)) +
            3.0 * (halveRow(first + ivec2(0, 1)) + halveRow(first + ivec2(0, 2)))) / 64.0;
}
