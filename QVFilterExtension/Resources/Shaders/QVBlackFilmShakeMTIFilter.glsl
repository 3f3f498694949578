// The picture, or a frame that will lie over one, jitters as in the gate of a projector. It is drawn larger than the
// frame by as much as it can move, so that its border is never seen. Transparency is kept.
#include "film.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVBlackFilmShakeMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 reach = (0.002 + 0.013 * effectValue) * min(size.x, size.y) / size;
    return readInput(0, 0.5 + (uv - 0.5) * (1.0 - 2.0 * reach) + projectorState(iTime).xy * reach);
}
