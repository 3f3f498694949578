// Strips of the picture zoom one after the other and change clips at their fastest. Outside a frame lies its mirror
// image.
#include "borders.glsl"
#include "transition.glsl"
#include "shutter.glsl"

uniform float progress;  // eased
selector int type;       // 0 columns inwards, 1 rows inwards, 2 columns outwards, 3 rows outwards, 4 diagonals inwards

vec4 scene(vec2 place, float moment) {
    const float kStrips = 4.0, kWait = 0.7;
    vec2 size = outputSize();
    float across = place.x * (1.0 / size.x);
    if (type == 1 || type == 3) across = place.y * (1.0 / size.y);
    if (type == 4) across = (place.x + place.y) * (1.0 / (size.x + size.y));
    float late = floor(across * kStrips) * (kWait / (kStrips - 1.0));
    float x = clamp(moment * (1.0 + kWait) - late, 0.0, 1.0);
    float moved = x * x * (3.0 - 2.0 * x);
    bool incoming = moved >= 0.5;
    // Down to 0.4 and on from 2.5, without a halt where the clips change.
    float grow = 1.0 - 1.2 * (incoming ? 1.0 - moved : moved);
    bool reciprocal = incoming != (type == 2 || type == 3);
    if (reciprocal) grow = 1.0 / grow;
    vec2 from = mirroredPlace(0.5 * size + (place - 0.5 * size) * grow, size);
    return incoming ? readPixel(1, pixelAt(from * (inputSize(1) / size))) : readPixel(0, pixelAt(from));
}

vec4 QVZoomSliceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float moment = relaxed(progress), shut = shutterAt(moment, 0.022);
    vec4 color = MEAN_OVER_SHUTTER(scene, uv * size, moment, shut, evenShift(pixelHere()), 0.3);
    return mix(withinAlpha(color), readHere(1), settled(progress, size));
}
