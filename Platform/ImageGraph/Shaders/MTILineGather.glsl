// A picture in lines: its rows run along them, and a column stands for `reduction` pixels. The weights 1 3 5 … 5 3 1 of
// twice as many taps keep what lies between two columns where it is.
#include "streaks.glsl"

selector int reduction;   // pixels of the line from column to column
selector int lightsOnly;  // 1: of the picture's lights
selector int isOnGrid;    // 1: the taps are pixels
selector int isTurned;    // 1, on the grid: columns and rows change places, so that neighbours stay neighbours

uniform vec2 tapStep;              // from tap to tap, pixels, y down
uniform vec2 origin;               // the first tap of the first pixel
uniform vec2 columnStep, rowStep;  // from pixel to pixel, in pixels of the input; turned, a row's are 1, 0

vec4 tap(vec2 place) {
    return taken(isOnGrid == 1 ? readPixel(0, ivec2(place)) : readInput(0, (place + 0.5) / inputSize(0)), lightsOnly);
}

vec4 pixelAt(ivec2 place) { return taken(readPixel(0, place), lightsOnly); }

vec4 turned() {
    ivec2 first = ivec2(pixelHere().x, 0) + ivec2(origin) + pixelHere().y * ivec2(columnStep);
    ivec2 last = first + (2 * reduction - 1) * ivec2(tapStep);
    vec4 sum = vec4(0.0);
    for (int i = 0; i < reduction; ++i) {
        ivec2 inwards = i * ivec2(tapStep);
        sum += float(2 * i + 1) * (pixelAt(first + inwards) + pixelAt(last - inwards));
    }
    return sum / float(2 * reduction * reduction);
}

vec4 MTILineGather(vec2 uv) {
    if (isTurned == 1) return turned();
    vec2 first = origin + float(pixelHere().x) * columnStep + float(pixelHere().y) * rowStep;
    vec2 last = first + float(2 * reduction - 1) * tapStep;
    vec4 sum = vec4(0.0);
    for (int i = 0; i < reduction; ++i) {
        vec2 inwards = float(i) * tapStep;
        sum += float(2 * i + 1) * (tap(first + inwards) + tap(last - inwards));
    }
    return sum / float(2 * reduction * reduction);
}
