// A whirl that takes the whole frame along; the outgoing picture winds up, the incoming one unwinds.
#include "coords.glsl"
#include "motion.glsl"

uniform float progress;    // linear
uniform float wrapWeight;  // 0 to 0.5 while the outgoing picture shows, then on to 1

vec4 QVRotationWarpFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = (uv - 0.5) * size;
    float wound = progress < 0.5 ? 2.0 * wrapWeight : 2.0 * wrapWeight - 2.0;
    float rest = max(1.0 - dot(away, away) * (4.0 / dot(size, size)), 0.0);
    vec2 turn = turnOf(-wound * (0.2 + 0.55 * rest * rest)) * (1.0 - 0.25 * abs(wound));
    vec2 from = vec2(away.x * turn.x - away.y * turn.y, away.x * turn.y + away.y * turn.x);
    vec2 place = mirrorRepeat(0.5 + from / size);
    return progress < 0.5 ? readInput(0, place) : readInput(1, place);
}
