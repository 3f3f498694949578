// Light on film.
#include "color.glsl"

// More light: the picture is `gain` (1 or more) times as bright in the shadows, and the lights run into white softly,
// one channel after the other.
vec4 overexposed(vec4 pixel, vec3 gain) {
    return premultiplied(1.0 - pow(max(1.0 - straight(pixel), 0.0), gain), pixel.a);
}

// Light in front of the picture: `light` may exceed 1 where it burns out.
vec4 lightOver(vec4 pixel, vec3 light) {
    vec3 cut = min(light, 1.0);
    return vec4(pixel.rgb + cut * (pixel.a - pixel.rgb), pixel.a);
}
