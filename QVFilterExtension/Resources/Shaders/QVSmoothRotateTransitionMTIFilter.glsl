// One turn through both clips, smeared along its arcs.
#include "borders.glsl"
#include "transition.glsl"
#include "shutter.glsl"
#include "whirl.glsl"

uniform float progress;  // eased
selector int type;       // 0 clockwise, 1 anticlockwise, 2 clockwise and zooming in, 3 anticlockwise and zooming out

vec4 tap(Whirl whirl, vec2 place, float later) {
    vec2 from = whirled(whirl, place, later);
    vec4 next = readPixel(1, pixelAt(from * (inputSize(1) / whirl.frame)));
    return progress < 0.5 ? readPixel(0, pixelAt(from)) : next;
}
#define SCENE(place, later) tap(whirl, place, later)

vec4 QVSmoothRotateTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 whole = vec2(type == 2 ? 1.4 : type == 3 ? -1.4 : 0.0, type == 1 || type == 3 ? -2.8 : 2.8);
    Whirl whirl = whirlOf(progress, whole, false, 0.5 * size, size);
    float shut = shutterAt(progress, 0.03);
    vec4 color = MEAN_OVER_SHUTTER(SCENE, uv * size, 0.0, shut, evenShift(pixelHere()), 0.4);
    return mix(withinAlpha(color), readHere(1), settled(progress, size));
}
