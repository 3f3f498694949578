// Passes of a blur along a line; MTILineGather and MTILineBox draw the others.
#include "streaks.glsl"

selector int pass;        // 0 samples, 1 spread
selector int lightsOnly;  // 1: samples take in the lights of the picture alone, spread makes them streak
selector int isOnGrid;    // 1: spread's rows are rows of the input
selector int isTurned;    // 1, on the grid: the gathered picture's columns are rows

uniform vec2 tapStep;      // of samples: from tap to tap, pixels, y down
uniform vec3 column, row;  // of spread: place in the input, in pixels, by x, y and 1

vec4 sampleAt(vec2 uv, float index) { return taken(readInput(0, uv + tapStep * index / inputSize(0)), lightsOnly); }

// The mean of eight samples.
vec4 samples(vec2 uv) {
    vec4 sum = sampleAt(uv, -3.5) + sampleAt(uv, -2.5) + sampleAt(uv, -1.5) + sampleAt(uv, -0.5);
    sum += sampleAt(uv, 0.5) + sampleAt(uv, 1.5) + sampleAt(uv, 2.5) + sampleAt(uv, 3.5);
    return sum / 8.0;
}

vec4 overHere(vec4 mean) { return given(mean, readHere(1), lightsOnly); }

// The gathered picture back at its places, over the picture as input 1.
vec4 spreadTurned() {
    float place = column.y * float(pixelHere().y) + column.z;
    ivec2 upper = ivec2(pixelHere().x + pixelHere().y * int(row.y) + int(row.z), int(floor(place)));
    return overHere(mix(readPixel(0, upper), readPixel(0, upper + ivec2(0, 1)), place - floor(place)));
}

vec4 spread() {
    if (isTurned == 1) return spreadTurned();
    vec3 here = vec3(pixelHere(), 1.0);
    vec2 place = vec2(dot(column, here), dot(row, here));
    if (isOnGrid == 0) return overHere(readInput(0, (place + 0.5) / inputSize(0)));
    ivec2 left = ivec2(floor(place.x), floor(place.y + 0.5));
    return overHere(mix(readPixel(0, left), readPixel(0, left + ivec2(1, 0)), place.x - floor(place.x)));
}

vec4 QVMotionBlurMTIFilter(vec2 uv) { return pass == 0 ? samples(uv) : spread(); }
