// A whirl around the middle of the frame that fades towards its edges.
#include "coords.glsl"
#include "frame.glsl"

uniform float angle;  // of the very middle, turns

vec4 QVSwirlMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float t = min(length((uv - 0.5) * size) / (0.32 * (size.x + size.y)), 1.0);
    float rest = 1.0 - t * t;
    vec2 place = rotateAbout(uv, vec2(0.5), angle * 6.2831853 * rest * rest, size.x / size.y);
    return readInput(0, mirrorAtEdges(place));
}
