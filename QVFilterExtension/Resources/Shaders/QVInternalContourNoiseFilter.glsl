// Wisps: a line drifts and curls in noise that flows. The noise is a sum of waves, each turned, and bent by those before
// it until no wave can be seen; finer ones run faster.
#include "displace.glsl"

uniform float uTime;         // milliseconds
uniform float uDirection;    // of the flow, degrees
uniform float uNSpeed;       // of the flow, longer sides a second
uniform float uDistortion;   // longer sides
uniform float uAspectRatio;  // of a grain
uniform float uNScale;       // grains along the longer side
selector int uComplexity;    // octaves, up to six

vec4 QVInternalContourNoiseFilter(vec2 uv) {
    vec2 size = outputSize(), pixel = 1.0 / size;
    vec2 p = alongFlow(uv * size * min(pixel.x, pixel.y), uDirection);
    float flow = uTime * 0.001 * uNSpeed;
    vec2 q = vec2((p.x - flow) / max(uAspectRatio, 0.01), p.y) * (0.4 * uNScale);
    float beat = flow * uNScale;

    vec2 r = (kGoldenTurn * q).yx;
    vec2 shift = wave(q.yx + vec2(0.13, 0.71));
    if (uComplexity > 1) shift += 0.8 * wave(r * 1.37 + shift * 0.2 + beat * vec2(0.3, -0.2));
    if (uComplexity > 2) shift += 0.45 * wave(r.yx * 2.6 + shift * 0.25 - beat * vec2(0.5, 0.4));
    if (uComplexity > 3) shift += 0.24 * wave(q.yx * 5.3 + shift.yx * 0.35 + beat * vec2(0.9, -0.7));
    if (uComplexity > 4) shift += 0.12 * zigzag(r * 11.1 + shift * 0.5 - beat * vec2(1.5, 1.1));
    if (uComplexity > 5) shift += 0.06 * zigzag(q * 21.7 + shift.yx * 0.7 + beat * vec2(2.3, -1.9));
    return readInput(0, uv + shift * (0.6 * uDistortion * max(size.x, size.y)) * pixel);
}
