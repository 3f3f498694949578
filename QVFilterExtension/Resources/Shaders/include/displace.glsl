// What noise that moves pixels is made of.
#include "particles.glsl"
#include "wave.glsl"

const mat2 kGoldenTurn = mat2(-0.737, 0.676, -0.676, -0.737);

// Turns a place into the frame of a flow: x along it. `direction` in degrees, anticlockwise on the screen.
vec2 alongFlow(vec2 p, float direction) {
    vec2 along = vec2(wave(direction / 360.0), -wave(direction / 360.0 - 0.25));
    return vec2(dot(p, along), dot(p, vec2(-along.y, along.x)));
}

// Straight up and down between -1 and 1.
vec2 zigzag(vec2 turns) { return abs(fract(turns) * 4.0 - 2.0) - 1.0; }

// Jags that are others for each whole-numbered `moment`: octaves of straight pieces, each turned, the coarsest one a unit
// long.
vec2 jags(vec2 p, float moment, int octaves) {
    vec2 turned = kGoldenTurn * p;
    vec4 a = particleDraw(vec2(moment, 1.0), 3.0), b = particleDraw(vec2(moment, 2.0), 3.0);
    vec2 shift = zigzag(p.yx * 0.5 + a.xy) + 0.7 * zigzag(turned.yx * 0.83 + a.zw);
    if (octaves > 1) shift += 0.55 * zigzag(turned.yx * 1.9 + shift * 0.15 + b.xy);
    if (octaves > 2) shift += 0.4 * zigzag(p.yx * 3.3 + shift * 0.2 + b.zw);
    if (octaves > 3) shift += 0.27 * zigzag(turned.yx * 6.1 + shift * 0.3 + a.yz);
    if (octaves > 4) shift += 0.17 * zigzag(p.yx * 11.7 + shift * 0.4 + b.yz);
    if (octaves > 5) shift += 0.1 * zigzag(turned.yx * 22.3 + shift * 0.4 + a.wx);
    return shift * 0.5;
}
