// Whole pixels of the input, transparent beside it.
uniform vec2 origin;  // the input's pixel that comes into the top left corner

vec4 MTICropPixels(vec2 uv) {
    ivec2 place = pixelHere() + ivec2(origin);
    bool inside = all(greaterThanEqual(place, ivec2(0))) && all(lessThan(place, ivec2(inputSize(0))));
    return inside ? readPixel(0, place) : vec4(0.0);
}
