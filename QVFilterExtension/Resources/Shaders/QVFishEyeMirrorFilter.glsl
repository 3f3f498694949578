#include "borders.glsl"
#include "coords.glsl"

uniform float mirrorNum;  // copies along each side
uniform float distance;   // to the right, widths of a copy

vec4 QVFishEyeMirrorFilter(vec2 uv) {
    vec2 place = mirrorRepeat(0.5 + (uv - 0.5) * mirrorNum + vec2(distance, 0.0));
    return readPixel(0, pixelAt(place * outputSize()));
}
