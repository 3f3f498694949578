// The picture, or a frame that will lie over one, in the gate of a projector: it jitters, its lamp flickers, and the
// gate's dark border shows where the film slips. What jitters is drawn larger than the frame by as much as it can move.
// Transparency is kept.
#include "film.glsl"
#include "gate.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVBlackFilmShakeMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 reach = (0.002 + 0.013 * effectValue) * min(size.x, size.y) / size;
    vec3 state = projectorState(iTime);
    vec4 color = readInput(0, 0.5 + (uv - 0.5) * (1.0 - 2.0 * reach) + state.xy * reach);
    // The gate stands, but the light creeps past it as the film moves.
    float gate = gateOpening(uv + 0.35 * state.xy * reach, size);
    vec2 away = uv * 2.0 - 1.0;
    float lamp = 1.0 + state.z * (0.03 + 0.14 * effectValue) - 0.3 * effectValue * dot(away, away) * 0.5;
    color.rgb *= clamp(lamp, 0.0, 1.2) * mix(1.0, gate, min(2.0 * effectValue, 1.0));
    color.rgb = min(color.rgb, color.a);
    return color;
}
