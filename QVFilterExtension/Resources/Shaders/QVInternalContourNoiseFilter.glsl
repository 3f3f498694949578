// Wisps: a line drifts and curls in noise that flows. The noise is a sum of waves, each turned, and bent by those before
// it until no wave can be seen.
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
    float flow = uTime * 0.001 * uNSpeed, scale = 0.4 * uNScale;
    // Two frames that pass each other: what their waves add up to boils.
    vec2 grain = vec2(scale / max(uAspectRatio, 0.01), scale);
    vec2 q = vec2(p.x - flow, p.y) * grain, r = kGoldenTurn * (vec2(p.x + 2.5 * flow, p.y + flow) * grain);

    vec2 shift = wave(q.yx + vec2(0.13, 0.71));
    if (uComplexity > 1) shift += 0.8 * wave(r.yx * 1.37 + shift * 0.2);
    if (uComplexity > 2) shift += 0.45 * wave(r * 2.6 - shift * 0.25);
    if (uComplexity > 3) shift += 0.24 * wave(q.yx * 5.3 + shift.yx * 0.35);
    if (uComplexity > 4) shift += 0.12 * zigzag(r.yx * 11.1 + shift * 0.5);
    if (uComplexity > 5) shift += 0.06 * zigzag(q * 21.7 + shift.yx * 0.7);
    return readInput(0, uv + shift * (0.6 * uDistortion * max(size.x, size.y)) * pixel);
}
