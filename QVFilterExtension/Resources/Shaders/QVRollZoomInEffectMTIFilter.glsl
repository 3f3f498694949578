// A push into the frame while it rolls, over a picture large enough to cover the frame however it is turned.
#include "coords.glsl"

uniform float effectValue;  // 1: 40 degrees, 1.3 times as near on top of covering the frame
uniform float progress;
uniform int level;  // 0 clockwise, 1 anticlockwise, 2 from a tilt to upright

// How much larger a picture has to be to cover its frame when it is turned.
float coverScale(float angle, vec2 size) {
    return cos(angle) + max(size.x / size.y, size.y / size.x) * sin(angle);
}

vec4 QVRollZoomInEffectMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float farthest = radians(40.0) * effectValue;
    float angle = farthest * (level == 2 ? 1.0 - progress : progress);
    float cover = coverScale(level == 2 ? farthest : angle, size);
    float shrink = exp2(-progress * log2(1.0 + 0.3 * effectValue)) / cover;
    vec2 turned = rotateAbout(uv, vec2(0.5), level == 1 ? angle : -angle, size.x / size.y);
    return readInput(0, 0.5 + (turned - 0.5) * shrink);
}
