// A dark matte over the picture that opens from its lights and its middle to its shadows and corners.
#include "color.glsl"

uniform float filterStrength;  // 0 closed, 1 the picture

vec4 QVRemainMataMTIFilter(vec2 uv) {
    const float kSoftness = 0.45;
    vec4 color = readHere(0);
    float light = luma(straight(color));
    vec2 fromCenter = (uv - 0.5) * outputSize();
    float corner = 4.0 * dot(fromCenter, fromCenter) / dot(outputSize(), outputSize());
    // What opens first has 0, what opens last 1.
    float turn = 1.0 - 0.6 * light - 0.4 * (1.0 - corner);
    float open = clamp((filterStrength * (1.0 + kSoftness) - turn) / kSoftness, 0.0, 1.0);
    open = open * open * (3.0 - 2.0 * open);
    vec3 ink = mix(vec3(light * color.a), color.rgb, 0.4) * vec3(0.09, 0.1, 0.13);
    return vec4(mix(ink, color.rgb, open), color.a);
}
