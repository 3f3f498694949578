// Light on film.

// More light: the picture is `gain` (1 or more) times as bright in the shadows, and the lights run into white softly,
// one channel after the other.
vec4 overexposed(vec4 pixel, vec3 gain) {
    return vec4(pixel.rgb * gain * pixel.a / max(pixel.a + pixel.rgb * (gain - 1.0), 1e-6), pixel.a);
}

// Light in front of the picture: `light` may exceed 1 where it burns out.
vec4 lightOver(vec4 pixel, vec3 light) {
    vec3 cut = min(light, 1.0);
    return vec4(pixel.rgb + cut * (pixel.a - pixel.rgb), pixel.a);
}
