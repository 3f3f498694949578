// Four quarters, each a window: the outgoing clip leaves it and the incoming one follows. The upper left quarter moves
// up, the next ones clockwise right, down and left, one a little after the other.
#include "borders.glsl"
#include "easing.glsl"
#include "shutter.glsl"

uniform float progress;

vec4 scene(vec2 place, float moment) {
    vec2 size = outputSize(), window = 0.5 * size;
    vec2 quarter = step(window, place), origin = quarter * window;
    bool vertical = quarter.x == quarter.y;
    vec2 way = vertical ? vec2(0.0, 2.0 * quarter.y - 1.0) : vec2(2.0 * quarter.x - 1.0, 0.0);
    float late = vertical ? 2.0 * quarter.y : 3.0 - 2.0 * quarter.x;
    float moved = smootherstep(clamp(moment * 1.3 - 0.1 * late, 0.0, 1.0));
    // Beyond the window on the side that it comes from lies the incoming clip.
    vec2 from = place - origin - way * window * moved;
    vec2 outside = abs(from * (1.0 / window) - 0.5);
    bool incoming = max(outside.x, outside.y) >= 0.5;
    from += origin + (incoming ? way * window : vec2(0.0));
    vec4 next = readPixel(1, pixelAt((incoming ? from : place) * (inputSize(1) / size)));
    vec4 last = readPixel(0, pixelAt(incoming ? place : from));
    // The one comes out of nothing and the other fades while it is a sliver, which would flash.
    return mix(last, next, incoming ? min(moved * 7.0, 1.0) : max(moved * 7.0 - 6.0, 0.0));
}

vec4 QVFourSliceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec4 color = MEAN_OVER_SHUTTER(scene, uv * size, progress, shutterAt(progress, 0.02), evenShift(pixelHere()), 0.0);
    return mix(color, readHere(1), step(1.0, progress));
}
