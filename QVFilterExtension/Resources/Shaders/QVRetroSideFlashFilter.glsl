// Light through a gap in the camera's back, at the left; a fainter reflection of it opposite.
#include "exposure.glsl"
#include "sidelight.glsl"

uniform float randomX;  // how far it reaches into the frame, widths of it
uniform float randomY;  // how far down it lies, heights of the frame
uniform bool mixColor;  // whether there are bursts of two colours
uniform int colorType;  // 0: none, 1 and 2: phases of a burst

vec4 QVRetroSideFlashFilter(vec2 uv) {
    float bend = 0.10 * wave(uv.y * 0.9 + randomY * 3.0);
    vec2 near = vec2(uv.x / (randomX * (1.3 + bend)), (uv.y - randomY) / 0.46);
    vec2 far = vec2((1.0 - uv.x) / (randomX * 0.8), (uv.y - 1.25 + randomY) / 0.34);
    float left = glowAt(length(near)), core = glowAt(length(near * vec2(2.4, 1.7)));
    float right = glowAt(length(far));

    float burst = mixColor && colorType > 0 ? 1.0 : 0.0, second = colorType == 2 ? 1.0 : 0.0;
    vec3 rose = vec3(1.0, 0.20, 0.46), turquoise = vec3(0.10, 0.78, 0.80);
    vec3 here = mix(vec3(1.0, 0.36, 0.10), mix(rose, turquoise, second), burst);
    vec3 there = mix(vec3(0.95, 0.30, 0.14), mix(turquoise, rose, second), burst);
    vec3 light = here * (0.95 * left) + mix(here, vec3(1.0, 0.86, 0.62), 0.75) * (0.8 * core) +
                 there * (mix(0.4, 0.95, burst) * right);
    light = onFilm(light);
    return lightOver(overexposed(readHere(0), 1.0 + 0.8 * light), light);
}
