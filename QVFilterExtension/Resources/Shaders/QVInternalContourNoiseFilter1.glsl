// Waves that run through a line, crossing one another.
#include "displace.glsl"

uniform float uTime;         // milliseconds
uniform float uDirection;    // of the waves, degrees
uniform float uNSpeed;       // of the waves, longer sides a second
uniform float uDistortion;   // longer sides
uniform float uAspectRatio;  // of a wave
uniform float uNScale;       // waves along the longer side
selector int uComplexity;    // trains of waves, up to six

// A train of waves across the direction in which it runs, which is as long as they are many.
vec2 train(vec2 p, vec2 along, float beat) { return vec2(-along.y, along.x) * wave(dot(p, along) - beat) / length(along); }

vec4 QVInternalContourNoiseFilter1(vec2 uv) {
    vec2 size = outputSize();
    float longSide = max(size.x, size.y);
    vec2 p = alongFlow(uv * size / longSide, uDirection) * uNScale;
    p.x /= max(uAspectRatio, 0.01);
    float beat = uTime * 0.001 * uNSpeed * uNScale;

    vec2 shift = train(p, vec2(0.5, 0.0), beat);
    if (uComplexity > 1) shift += train(p + shift * 0.1, vec2(0.38, 0.74), beat * 1.3) * 0.7;
    if (uComplexity > 2) shift += train(p + shift * 0.1, vec2(0.95, -0.98), beat * 1.9) * 0.45;
    if (uComplexity > 3) shift += train(p, vec2(-0.96, 2.09), beat * 2.7) * 0.28;
    if (uComplexity > 4) shift += train(p, vec2(3.42, 1.87), beat * 4.1) * 0.17;
    if (uComplexity > 5) shift += train(p, vec2(-0.2, -6.7), beat * 6.3) * 0.1;
    return readInput(0, uv + shift * uDistortion * longSide / size);
}
