// A glass ball that grows out of the middle. Inside it the incoming picture bulges; around it the outgoing one is bent.
#include "coords.glsl"
#include "liquid.glsl"

uniform float progress;   // eased; the ball covers the frame at 0.8
uniform float rgbWeight;  // 0..1, how far the colours part

vec4 QVFishEyeLensFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = uv - 0.5;
    vec2 reach = away * size * (2.0 * inversesqrt(dot(size, size)));
    float far = dot(reach, reach);
    float radius = 1.3 * progress;
    // Places in radii of the ball, squared; each colour has its own ball.
    vec3 radii = max(radius * (1.0 + vec3(-0.05, 0.0, 0.05) * rgbWeight), 1e-4);
    vec3 e = far / (radii * radii);
    vec3 soft = clamp((1.0 - e) * radius * 60.0 + 0.5, 0.0, 1.0);
    float strength = 1.0 - progress;
    vec3 inside = 1.0 + strength * (0.9 * e * e - 0.45);
    vec3 outside = 1.0 - 0.3 * rgbWeight / max(e * e, 1.0);
    vec4 r = mix(readInput(0, 0.5 + away * outside.x), readInput(1, mirrorRepeat(0.5 + away * inside.x)), soft.x);
    vec4 g = mix(readInput(0, 0.5 + away * outside.y), readInput(1, mirrorRepeat(0.5 + away * inside.y)), soft.y);
    vec4 b = mix(readInput(0, 0.5 + away * outside.z), readInput(1, mirrorRepeat(0.5 + away * inside.z)), soft.z);
    return partedColors(r, g, b);
}
