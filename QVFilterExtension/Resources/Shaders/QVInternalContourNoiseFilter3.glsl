// Jags: a line breaks into straight pieces that leap to other places, as an electric arc does.
#include "displace.glsl"

uniform float uTime;         // milliseconds
uniform float uDirection;    // in which the jags wander, degrees
uniform float uNSpeed;       // of their wandering, longer sides a second
uniform float uDistortion;   // longer sides
uniform float uAspectRatio;  // of a jag
uniform float uNScale;       // jags along the longer side
selector int uComplexity;    // octaves, up to six

const float kLeaps = 14.0;  // a second

// Random values of unit cells, straight between them.
vec2 jagPair(vec2 p, float seed) {
    vec2 cell = floor(p), t = p - cell;
    vec2 a = particleDraw(cell, seed).xy, b = particleDraw(cell + vec2(1.0, 0.0), seed).xy;
    vec2 c = particleDraw(cell + vec2(0.0, 1.0), seed).xy, d = particleDraw(cell + 1.0, seed).xy;
    return mix(mix(a, b, t.x), mix(c, d, t.x), t.y) * 2.0 - 1.0;
}

vec4 QVInternalContourNoiseFilter3(vec2 uv) {
    vec2 size = outputSize();
    float longSide = max(size.x, size.y), seconds = uTime * 0.001;
    vec2 p = alongFlow(uv * size / longSide, uDirection);
    vec2 q = vec2((p.x - seconds * uNSpeed) / max(uAspectRatio, 0.01), p.y) * uNScale;
    float leap = floor(seconds * kLeaps) * 7.0;

    vec2 shift = jagPair(q, leap + 1.0);
    if (uComplexity > 1) shift += jagPair(q * 2.1, leap + 2.0) * 0.6;
    if (uComplexity > 2) shift += jagPair(q * 4.3, leap + 3.0) * 0.36;
    if (uComplexity > 3) shift += jagPair(q * 8.9, leap + 4.0) * 0.22;
    if (uComplexity > 4) shift += jagPair(q * 18.1, leap + 5.0) * 0.13;
    if (uComplexity > 5) shift += jagPair(q * 36.7, leap + 6.0) * 0.08;
    return readInput(0, uv + shift * uDistortion * longSide / size);
}
