// Wisps: a line drifts and curls in noise that flows. Each octave moves a little faster than the one before.
#include "displace.glsl"

uniform float uTime;         // milliseconds
uniform float uDirection;    // of the flow, degrees
uniform float uNSpeed;       // of the flow, longer sides a second
uniform float uDistortion;   // longer sides
uniform float uAspectRatio;  // of a grain
uniform float uNScale;       // grains along the longer side
selector int uComplexity;    // octaves, up to six

vec4 QVInternalContourNoiseFilter(vec2 uv) {
    vec2 size = outputSize();
    float longSide = max(size.x, size.y);
    vec2 p = alongFlow(uv * size / longSide, uDirection);
    float flow = uTime * 0.001 * uNSpeed;
    vec2 q = vec2((p.x - flow) / max(uAspectRatio, 0.01), p.y) * uNScale;
    float beat = flow * uNScale;

    vec2 shift = noisePair(q, 1.0);
    if (uComplexity > 1) shift += noisePair(q * 2.03 + shift * 0.7 - vec2(beat * 0.6, 0.0), 2.0) * 0.55;
    if (uComplexity > 2) shift += noisePair(q * 4.1 + shift * 0.7 - vec2(beat * 1.5, 0.0), 3.0) * 0.3;
    if (uComplexity > 3) shift += noisePair(q * 8.3 - vec2(beat * 3.0, 0.0), 4.0) * 0.16;
    if (uComplexity > 4) shift += noisePair(q * 16.7 - vec2(beat * 5.0, 0.0), 5.0) * 0.09;
    if (uComplexity > 5) shift += noisePair(q * 33.1 - vec2(beat * 9.0, 0.0), 6.0) * 0.05;
    return readInput(0, uv + shift * uDistortion * longSide / size);
}
