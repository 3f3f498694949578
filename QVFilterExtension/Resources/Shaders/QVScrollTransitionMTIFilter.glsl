// The clips pushed through the frame like a strip of film, smeared along their way.
#include "borders.glsl"
#include "transition.glsl"
#include "shutter.glsl"

uniform float progress;   // eased
selector int scrollType;  // 0 left, 1 right, 2 up, 3 down; 4 to 7 the same over four frames with mirror images of both

// Whether and how the picture moves: across the frame or up and down it, towards its beginning or its end.
bool rolls() { return scrollType >= 4 && scrollType <= 7; }
bool upright() { return scrollType == 2 || scrollType == 3 || scrollType == 6 || scrollType == 7; }
bool backwards() { return scrollType == 1 || scrollType == 3 || scrollType == 5 || scrollType == 7; }

vec4 scene(vec2 place, float moment) {
    vec2 size = outputSize();
    float side = upright() ? size.y : size.x, at = upright() ? place.y : place.x;
    if (backwards()) at = side - at;
    at += moment * side * (rolls() ? 4.0 : 1.0);
    float copies = floor(at * (1.0 / side));
    at -= copies * side;
    // Of the roll's five frames the second and the fourth are mirror images.
    bool incoming = rolls() ? copies > 1.5 : copies > 0.5;
    if (rolls() && (copies == 1.0 || copies == 3.0)) at = side - at;
    if (backwards()) at = side - at;
    vec2 from = upright() ? vec2(place.x, at) : vec2(at, place.y);
    return incoming ? readPixel(1, pixelAt(from * (inputSize(1) / size))) : readPixel(0, pixelAt(from));
}

vec4 QVScrollTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float shut = shutterAt(progress, rolls() ? 0.022 : 0.035);
    vec4 color = MEAN_OVER_SHUTTER(scene, uv * size, progress, shut, evenShift(pixelHere()), 0.35);
    return mix(withinAlpha(color), readHere(1), settled(progress, size));
}
