// A still camera's finder until its mirror swings up and the flash fires; then the picture as the flash leaves it.
#include "exposure.glsl"

uniform float progress;  // of the clip

vec4 QVCameraFlashMTiFilter(vec2 uv) {
    vec2 away = (uv - 0.5) * 2.0;
    float r2 = dot(away, away) * 0.5;
    float finder = 1.0 - smoothstep(0.60, 0.63, progress);
    float mirror = smoothstep(0.550, 0.570, progress) * (1.0 - smoothstep(0.582, 0.606, progress));

    vec4 color = readHere(0);
    color.rgb *= (1.0 - finder * r2 * (0.18 + 0.42 * r2)) * (1.0 - 0.97 * mirror);

    float fade = 1.0 - clamp((progress - 0.63) * 4.0, 0.0, 1.0);
    float flash = (1.0 - finder) * fade * fade * fade;
    // It lights what is near the middle most; its last light is warm.
    float reach = flash / (1.0 + r2 * (1.0 - flash) * 2.0);
    vec3 warmth = mix(vec3(1.0, 0.90, 0.76), vec3(1.0), flash);
    color = overexposed(color, 1.0 + 14.0 * reach * warmth);
    return lightOver(color, reach * reach * mix(vec3(1.0, 0.95, 0.88), vec3(1.0), flash));
}
