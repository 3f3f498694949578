// One swing through both clips about a point beyond the frame, smeared along its arcs.
#include "borders.glsl"
#include "transition.glsl"
#include "shutter.glsl"
#include "whirl.glsl"

uniform float progress;   // eased
selector int direction;   // where the picture swings to: 0 left, 1 right, 2 up, 3 down

vec4 tap(Whirl whirl, vec2 place, float later) {
    vec2 from = whirled(whirl, place, later);
    vec4 next = readPixel(1, pixelAt(from * (inputSize(1) / whirl.frame)));
    return progress < 0.5 ? readPixel(0, pixelAt(from)) : next;
}
#define SCENE(place, later) tap(whirl, place, later)

vec4 QVSmoothRadialTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    // Above a pivot what turns clockwise moves to the right, to the right of one it moves down.
    bool upright = direction == 2 || direction == 3;
    float reach = 0.8 * max(size.x, size.y);
    vec2 pivot = 0.5 * size + (upright ? vec2(-reach, 0.0) : vec2(0.0, reach));
    vec2 whole = vec2(0.3, direction == 1 || direction == 3 ? 1.4 : -1.4);
    Whirl whirl = whirlOf(progress, whole, false, pivot, size);
    float shut = shutterAt(progress, 0.035);
    vec4 color = MEAN_OVER_SHUTTER(SCENE, uv * size, 0.0, shut, evenShift(pixelHere()), 0.4);
    return mix(withinAlpha(color), readHere(1), settled(progress, size));
}
