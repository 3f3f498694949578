// The mean of up to 18 steps of a line, the outermost taps weighed by how much of them the line covers.
#include "streaks.glsl"

selector int lightsOnly;  // 1: of the picture's lights, which streak

uniform vec2 tapStep;  // from tap to tap, whole pixels, y down
uniform float steps;   // the length of the line, in tapSteps

vec4 tap(ivec2 offset) { return taken(readPixel(0, pixelHere() + offset), lightsOnly); }

vec4 pair(float index) {
    ivec2 offset = ivec2(tapStep * index);
    vec4 both = tap(offset) + tap(-offset);
    return both * clamp(0.5 * steps + 0.5 - index, 0.0, 1.0);
}

vec4 MTILineBox(vec2 uv) {
    vec4 here = readPixel(0, pixelHere()), sum = taken(here, lightsOnly) * min(steps, 1.0);
    sum += pair(1.0) + pair(2.0) + pair(3.0) + pair(4.0) + pair(5.0) + pair(6.0);
    sum += pair(7.0) + pair(8.0) + pair(9.0);
    return given(sum / steps, here, lightsOnly);
}
