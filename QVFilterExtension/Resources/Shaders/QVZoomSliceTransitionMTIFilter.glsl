// Strips of the picture zoom one after the other and change clips at their fastest. Outside a frame lies its mirror image.
#include "shutter.glsl"

uniform float progress;  // eased
selector int type;       // 0 columns inwards, 1 rows inwards, 2 columns outwards, 3 rows outwards, 4 diagonals inwards

vec4 scene(vec2 place, float moment) {
    const float kStrips = 4.0, kWait = 0.7;
    vec2 size = outputSize();
    vec2 at = place / size;
    float across = type == 1 || type == 3 ? at.y : type == 4 ? (place.x + place.y) / (size.x + size.y) : at.x;
    float late = kWait * floor(across * kStrips) / (kStrips - 1.0);
    float x = clamp(moment * (1.0 + kWait) - late, 0.0, 1.0);
    float moved = x * x * (3.0 - 2.0 * x);
    bool incoming = moved >= 0.5;
    // Down to 0.4 and on from 2.5, without a halt where the clips change.
    float grow = 1.0 - 1.2 * (incoming ? 1.0 - moved : moved);
    bool reciprocal = incoming != (type == 2 || type == 3);
    if (reciprocal) grow = 1.0 / grow;
    vec2 from = mirroredPlace(0.5 * size + (place - 0.5 * size) * grow, size);
    vec4 next = readPixel(1, ivec2(from * (inputSize(1) / size)));
    return incoming ? next : readPixel(0, ivec2(from));
}

vec4 QVZoomSliceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec4 color = MEAN_OVER_SHUTTER(scene, uv * size, progress, shutterAt(progress, 0.025), evenShift(pixelHere()), 0.3);
    return mix(withinAlpha(color), readInput(1, uv), settled(progress, size));
}
