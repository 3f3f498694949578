// A whirlpool around the middle of the frame: the closer, the farther it is turned. It smears along its way, and light
// and shadow lie on its arms.
#include "frame.glsl"
#include "motion.glsl"

uniform float angle;  // turns at a third of the way from the middle to the rim; the very middle turns 2.25 times as far

vec2 whirl(vec2 away, float turns) {
    vec2 turn = turnOf(turns);
    return vec2(away.x * turn.x - away.y * turn.y, away.x * turn.y + away.y * turn.x);
}

vec4 QVSwirlMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = (uv - 0.5) * size;
    float reach = 0.34 * (size.x + size.y);
    float rest = max(1.0 - length(away) / reach, 0.0);
    float turns = 2.25 * angle * rest * rest;
    float smear = 0.03 * turns;
    vec4 sum = readInput(0, mirrorAtEdges(0.5 + whirl(away, turns) / size)) * 0.4;
    sum += readInput(0, mirrorAtEdges(0.5 + whirl(away, turns - smear) / size)) * 0.3;
    sum += readInput(0, mirrorAtEdges(0.5 + whirl(away, turns + smear) / size)) * 0.3;
    // Three arms that wind as the picture does.
    vec2 arm = normalize(whirl(away, turns * 1.5 + 0.4 * rest) + 1e-3);
    float ridge = arm.x * (4.0 * arm.x * arm.x - 3.0);  // cosine of three times its angle
    float depth = min(abs(angle) * 2.2, 0.6) * rest * (1.0 - 0.4 * rest);
    sum.rgb *= 1.0 - depth * (0.35 - 0.45 * ridge) - 0.5 * min(abs(angle), 0.5) * rest * rest * rest;
    sum.rgb = min(sum.rgb, sum.a);
    return sum;
}
