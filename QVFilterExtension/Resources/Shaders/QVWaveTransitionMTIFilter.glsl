// Ripples run outwards from the middle, bend the picture, catch the light, and turn the outgoing clip into the incoming one.
#include "easing.glsl"
#include "frame.glsl"
#include "passage.glsl"
#include "wave.glsl"

uniform float progress;  // eased
uniform float ratio;     // of the frame, width to height

vec4 QVWaveTransitionMTIFilter(vec2 uv) {
    const float kReach = 0.4;  // of the ripples, to either side
    vec2 aspect = vec2(max(ratio, 1.0), max(1.0 / ratio, 1.0));  // the shorter side is 1
    vec2 away = (uv - 0.5) * aspect;
    float squared = dot(away, away), reciprocal = inversesqrt(squared + 1e-3);
    float front = mix(-kReach, 0.5 * length(aspect) + kReach, relaxed(progress)) - squared * reciprocal;  // positive behind it
    float envelope = max(1.0 - abs(front) * (1.0 / kReach), 0.0);
    vec2 slope = away * (reciprocal * envelope * envelope * wave(front * 6.0 + 0.25));
    vec2 bent = mirrorAtEdges(uv + slope * (0.07 / aspect));
    vec4 color = mix(readInput(0, bent), readInput(1, bent), linearstep(-0.14, 0.14, front));
    float light = dot(slope, vec2(-0.15, -0.2));
    return vec4(clamp(color.rgb + light * (color.rgb + 0.4 * color.a), vec3(0.0), color.aaa), color.a);
}
