// A line in the colours of a ramp, from its middle to its rim. Inputs: the line's mask, the ramp.
#include "line.glsl"

vec4 colorArrayFragment(vec2 uv) {
    vec4 line = readHere(0);
    float entries = inputSize(1).x;
    return readInput(1, vec2(((1.0 - lineGlow(line)) * (entries - 1.0) + 0.5) / entries, 0.5)) * line.a;
}
