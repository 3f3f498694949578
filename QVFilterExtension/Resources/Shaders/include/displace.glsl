// Noise that moves pixels: two numbers of a place, about -1..1.
#include "particles.glsl"

// Smooth random values of unit cells.
vec2 noisePair(vec2 p, float seed) {
    vec2 cell = floor(p), f = p - cell, t = f * f * (3.0 - 2.0 * f);
    vec2 a = particleDraw(cell, seed).xy, b = particleDraw(cell + vec2(1.0, 0.0), seed).xy;
    vec2 c = particleDraw(cell + vec2(0.0, 1.0), seed).xy, d = particleDraw(cell + 1.0, seed).xy;
    return mix(mix(a, b, t.x), mix(c, d, t.x), t.y) * 2.0 - 1.0;
}

// Turns a place into the frame of a flow: x along it. `direction` in degrees, anticlockwise on the screen.
vec2 alongFlow(vec2 p, float direction) {
    float angle = radians(direction);
    vec2 along = vec2(cos(angle), -sin(angle));
    return vec2(dot(p, along), dot(p, vec2(-along.y, along.x)));
}
