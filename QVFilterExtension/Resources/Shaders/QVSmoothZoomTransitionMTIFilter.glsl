// One zoom through both clips, smeared and with the colour fringes of a lens towards the rim.
#include "borders.glsl"
#include "transition.glsl"
#include "shutter.glsl"
#include "whirl.glsl"

uniform float progress;  // eased
selector int type;       // 0 in, 1 out, 2 in and back, 3 out and back

vec4 tap(Whirl whirl, vec2 place, float later) {
    vec2 from = whirled(whirl, place, later);
    vec4 next = readPixel(1, pixelAt(from * (inputSize(1) / whirl.frame)));
    return progress < 0.5 ? readPixel(0, pixelAt(from)) : next;
}
#define SCENE(place, later) tap(whirl, place, later)

vec4 QVSmoothZoomTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 whole = vec2(type == 1 || type == 3 ? -1.8 : 1.8, 0.0);
    Whirl whirl = whirlOf(progress, whole, type == 2 || type == 3, 0.5 * size, size);
    // Mirror images beyond the edges of the picture are smeared more, lest they be taken for more people.
    vec2 place = complexProduct(whirl.turn, (uv - 0.5) * size) * (1.0 / size);
    vec2 beyond = max(abs(place) - 0.5, 0.0);
    float shut = shutterAt(progress, 0.05 + 0.08 * max(beyond.x, beyond.y));
    vec4 color = MEAN_OVER_SHUTTER(SCENE, uv * size, 0.0, shut, evenShift(pixelHere()), 0.6);
    return mix(withinAlpha(color), readHere(1), settled(progress, size));
}
