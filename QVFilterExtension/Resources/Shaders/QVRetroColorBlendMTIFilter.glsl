// The second picture as coloured light over the first. Inputs: the picture, the light.
#include "color.glsl"
#include "exposure.glsl"
#include "sidelight.glsl"

uniform int flashSide;  // 0 left, 1 top, 2 right, 3 bottom

vec4 QVRetroColorBlendMTIFilter(vec2 uv) {
    vec4 other = readHere(1);
    float bright = luma(other.rgb);
    float d = fromSide(uv, flashSide).x;
    vec3 warm = (flashSide & 1) == 0 ? vec3(1.0, 0.52, 0.16) : vec3(1.0, 0.76, 0.30);
    vec3 cold = (flashSide & 1) == 0 ? vec3(1.0, 0.26, 0.40) : vec3(0.22, 0.72, 0.70);
    vec3 tint = flashSide < 2 ? warm : cold;
    float fall = (1.0 - d) * (1.0 - d) * (1.0 - 0.3 * d);
    vec3 light = mix(other.rgb, tint * bright * 1.4, 0.75) * fall;
    return lightOver(overexposed(readHere(0), 1.0 + 0.6 * light), light);
}
