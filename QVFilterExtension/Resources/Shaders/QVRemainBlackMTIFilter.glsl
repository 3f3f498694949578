// The picture comes out of the dark: its lights first, warm, then the middle, the corners last.
#include "color.glsl"

uniform float filterStrength;  // 0 black, 1 the picture

vec4 QVRemainBlackMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    vec3 rgb = straight(color);
    vec2 away = uv * 2.0 - 1.0;
    float far = 0.5 * dot(away, away);
    // How much later a pixel comes: what is dark, and what is far from the middle.
    float late = 0.55 * (1.0 - luma(rgb)) + 0.35 * min(far, 1.0);
    float come = clamp((filterStrength * 1.9 - late) / (1.9 - 0.9), 0.0, 1.0);
    come = come * come * (3.0 - 2.0 * come);
    vec3 ember = mix(vec3(1.06, 0.86, 0.62), vec3(1.0), come);
    return vec4(min(color.rgb * ember * come, color.a), color.a);
}
