// The passes of a blur along a line.
#include "color.glsl"

selector int pass;       // 0 samples, 1 box, 2 gather, 3 spread
selector int reduction;  // of gather: pixels of the line from column to column
selector int lightsOnly; // 1: the first pass takes in the lights of the picture alone, the last one makes them streak
selector int isOnGrid;   // 1: gather's taps are pixels, spread's rows are rows of the input
selector int isTurned;   // 1, on the grid: the gathered picture's columns are rows, so that neighbours stay neighbours

uniform vec2 tapStep;            // from tap to tap, pixels, y down
uniform float steps;             // of box: the length of the line, in tapSteps
uniform vec2 origin;             // of gather: its first pixel's first tap
uniform vec2 columnStep, rowStep;  // of gather: from pixel to pixel, in pixels of the input; turned, a row's are 1, 0
uniform vec3 column, row;        // of spread: place in the input, in pixels, by x, y and 1

// What the first pass takes in of a pixel.
vec4 taken(vec4 pixel) {
    if (lightsOnly == 0) return pixel;
    float light = luma(pixel.rgb);
    return vec4(pixel.rgb * min(1.2 * light * light, 1.0), pixel.a);
}

// What the last pass gives: light that comes from elsewhere on the line is stronger than what was there before.
vec4 given(vec4 mean, vec4 here) {
    if (lightsOnly == 0) return mean;
    vec3 more = max(mean.rgb - taken(here).rgb, 0.0);
    return vec4(min(mean.rgb + 1.8 * more, mean.a), mean.a);
}

vec4 sampleAt(vec2 uv, float index) { return taken(readInput(0, uv + tapStep * index / inputSize(0))); }

// The mean of eight samples.
vec4 samples(vec2 uv) {
    vec4 sum = sampleAt(uv, -3.5) + sampleAt(uv, -2.5) + sampleAt(uv, -1.5) + sampleAt(uv, -0.5);
    sum += sampleAt(uv, 0.5) + sampleAt(uv, 1.5) + sampleAt(uv, 2.5) + sampleAt(uv, 3.5);
    return sum / 8.0;
}

vec4 boxPair(float index) {
    ivec2 offset = ivec2(tapStep * index);
    vec4 pair = taken(readPixel(0, pixelHere() + offset)) + taken(readPixel(0, pixelHere() - offset));
    return pair * clamp(0.5 * steps + 0.5 - index, 0.0, 1.0);
}

// The mean of up to 18 steps, the outermost taps weighed by how much of them the line covers.
vec4 box() {
    vec4 here = readPixel(0, pixelHere()), sum = taken(here) * min(steps, 1.0);
    sum += boxPair(1.0) + boxPair(2.0) + boxPair(3.0) + boxPair(4.0) + boxPair(5.0) + boxPair(6.0);
    sum += boxPair(7.0) + boxPair(8.0) + boxPair(9.0);
    return given(sum / steps, here);
}

vec4 gatherTap(vec2 place) {
    return taken(isOnGrid == 1 ? readPixel(0, ivec2(place)) : readInput(0, (place + 0.5) / inputSize(0)));
}

// A column to `reduction` steps of the line: the weights 1 3 5 … 5 3 1 of twice as many taps keep what lies between
// two columns where it is.
vec4 gatherTurned() {
    ivec2 first = ivec2(pixelHere().x, 0) + ivec2(origin) + pixelHere().y * ivec2(columnStep);
    ivec2 last = first + (2 * reduction - 1) * ivec2(tapStep);
    vec4 sum = vec4(0.0);
    for (int i = 0; i < reduction; ++i) {
        ivec2 inwards = i * ivec2(tapStep);
        sum += float(2 * i + 1) * (taken(readPixel(0, first + inwards)) + taken(readPixel(0, last - inwards)));
    }
    return sum / float(2 * reduction * reduction);
}

vec4 gather() {
    if (isTurned == 1) return gatherTurned();
    vec2 first = origin + float(pixelHere().x) * columnStep + float(pixelHere().y) * rowStep;
    vec2 last = first + float(2 * reduction - 1) * tapStep;
    vec4 sum = vec4(0.0);
    for (int i = 0; i < reduction; ++i) {
        vec2 inwards = float(i) * tapStep;
        sum += float(2 * i + 1) * (gatherTap(first + inwards) + gatherTap(last - inwards));
    }
    return sum / float(2 * reduction * reduction);
}

// The gathered picture back at its places, over the picture as input 1.
vec4 spreadTurned() {
    float place = column.y * float(pixelHere().y) + column.z;
    ivec2 upper = ivec2(pixelHere().x + pixelHere().y * int(row.y) + int(row.z), int(floor(place)));
    return given(mix(readPixel(0, upper), readPixel(0, upper + ivec2(0, 1)), place - floor(place)), readHere(1));
}

vec4 spread() {
    if (isTurned == 1) return spreadTurned();
    vec3 here = vec3(pixelHere(), 1.0);
    vec2 place = vec2(dot(column, here), dot(row, here));
    if (isOnGrid == 0) return given(readInput(0, (place + 0.5) / inputSize(0)), readHere(1));
    ivec2 left = ivec2(floor(place.x), floor(place.y + 0.5));
    return given(mix(readPixel(0, left), readPixel(0, left + ivec2(1, 0)), place.x - floor(place.x)), readHere(1));
}

vec4 QVMotionBlurMTIFilter(vec2 uv) {
    if (pass == 0) return samples(uv);
    if (pass == 1) return box();
    return pass == 2 ? gather() : spread();
}
