// A line in the colours of a picture. Inputs: the line's mask, the picture.
#include "line.glsl"

vec4 colorImageFragment(vec2 uv) {
    vec4 line = readHere(0);
    return readHere(1) * (lineGlow(line) * line.a);
}
