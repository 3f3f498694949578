// The kaleidoscope opens from the middle outwards and closes again.
#include "liquid.glsl"

uniform float progress;  // eased; 0 shows the second input alone, 0.5 the first

vec4 QVKaleidoscopeChangeFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 reach = (uv - 0.5) * size * (2.0 * inversesqrt(dot(size, size)));
    float swell = swellOf(progress);
    swell *= swell;
    float share = clamp((1.2 * swell - length(reach)) * 6.0, 0.0, 1.0);
    // 1 stands for the very middle and for the end: at the end the mirrors are open.
    if (progress >= 1.0) share = 1.0;
    return mix(readHere(1), readHere(0), share);
}
