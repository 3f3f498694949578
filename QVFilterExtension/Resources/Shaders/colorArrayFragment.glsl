// A line in the colours of a ramp, from its middle to its rim. Inputs: the line's mask; the ramp as a picture of one row,
// where it has more than two colours.
#include "line.glsl"

uniform vec4 inner, outer;  // the ramp's ends, not premultiplied
selector int isPicture;     // 1: the ramp is the picture

vec4 colorArrayFragment(vec2 uv) {
    vec4 line = readHere(0);
    float glow = lineGlow(line);
    // A colour counts by its alpha, a transparent one a little.
    float more = glow * (inner.a + 0.15), less = (1.0 - glow) * (outer.a + 0.15);
    vec4 color = vec4((inner.rgb * more + outer.rgb * less) / (more + less), 1.0) * mix(outer.a, inner.a, glow);
    if (isPicture == 1) color = readPixel(1, ivec2((1.0 - glow) * (inputSize(1).x - 1.0) + 0.5, 0));
    return color * line.a;
}
