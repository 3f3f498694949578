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

vec4 QVInternalContourNoiseFilter3(vec2 uv) {
    vec2 size = outputSize();
    float longSide = max(size.x, size.y), seconds = uTime * 0.001;
    vec2 p = alongFlow(uv * size / longSide, uDirection);
    vec2 q = vec2((p.x - seconds * uNSpeed) / max(uAspectRatio, 0.01), p.y) * uNScale;
    vec2 shift = jags(q, floor(seconds * kLeaps), uComplexity);
    return readInput(0, uv + shift * uDistortion * longSide / size);
}
