// Sectors around the middle of the frame, each the reflection of its neighbours. The picture turns behind them, and
// they turn the other way at a quarter of its speed. As the turn begins the mirrors close.
#include "coords.glsl"
#include "motion.glsl"

uniform float rotateAngle;  // of the picture, radians
uniform float splitNum;     // sectors around the circle; below 1.5 the picture stays as it is

vec4 QVKaleidoscopeRotateFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = (uv - 0.5) * size;
    float turn = rotateAngle * 0.15915494;
    float count = floor(splitNum + 0.5), sector = 1.0 / max(count, 1.0);
    // Turns; each sector is folded along its own middle.
    float angle = atan(away.y, away.x) * 0.15915494 + 0.25 * turn;
    float folded = abs(angle - sector * floor(angle / sector + 0.5));
    vec2 place = 0.5 + turnOf(folded + turn) * length(away) / size;
    float closed = smoothstep(0.03, 0.2, abs(rotateAngle));
    return readInput(0, count < 1.5 ? uv : mix(uv, mirrorRepeat(place), closed));
}
