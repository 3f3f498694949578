// A line in the colours of a ramp, from its middle to its rim. Inputs: the line's mask, the ramp.
#include "line.glsl"

vec4 colorArrayFragment(vec2 uv) {
    vec4 line = readHere(0);
    return readPixel(1, ivec2((1.0 - lineGlow(line)) * (inputSize(1).x - 1.0) + 0.5, 0)) * line.a;
}
