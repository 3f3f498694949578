// A whirl around the middle of the frame that fades towards its edges.
#include "frame.glsl"
#include "wave.glsl"

uniform float angle;  // of the very middle, turns

vec4 QVSwirlMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = (uv - 0.5) * size;
    float reach = 0.32 * (size.x + size.y);
    float rest = max(1.0 - dot(away, away) / (reach * reach), 0.0);
    // The waves stand for cosine and sine: a rotation to within two hundredths of the distance.
    vec2 turn = wave(angle * rest * rest - vec2(0.0, 0.25));
    vec2 place = vec2(away.x * turn.x - away.y * turn.y, away.x * turn.y + away.y * turn.x);
    return readInput(0, mirrorAtEdges(0.5 + place / size));
}
