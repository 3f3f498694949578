// The picture, or a frame that will lie over one, jitters as in the gate of a projector, by whole pixels. Where its border
// would be seen, it goes on mirrored. Transparency is kept.
#include "film.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVBlackFilmShakeMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 shift = projectorState(iTime).xy * (0.002 + 0.013 * effectValue) * min(size.x, size.y);
    ivec2 last = ivec2(size) - 1;
    return readPixel(0, last - abs(last - abs(pixelHere() + ivec2(floor(shift + 0.5)))));
}
