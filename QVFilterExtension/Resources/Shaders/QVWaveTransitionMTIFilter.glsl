// Ripples run outwards from the middle, bend the picture, catch the light, and turn the outgoing clip into the incoming
// one.
#include "frame.glsl"
#include "transition.glsl"

uniform float progress;  // eased
uniform float ratio;     // of the frame, width to height

// Nearly sin(-2 pi turns).
float swell(float turns) {
    float x = fract(turns) * 2.0 - 1.0;
    return 4.0 * x * (1.0 - abs(x));
}

vec4 QVWaveTransitionMTIFilter(vec2 uv) {
    const float kReach = 0.4;  // of the ripples, to either side
    float tall = 1.0 / ratio;
    vec2 aspect = vec2(max(ratio, 1.0), max(tall, 1.0));  // the shorter side is 1
    vec2 away = (uv - 0.5) * aspect;
    float squared = dot(away, away), reciprocal = inversesqrt(squared + 1e-3);
    float rim = 0.5 * max(aspect.x, aspect.y) + 0.21;  // at least as far as a corner
    float front = mix(-kReach, rim + kReach, relaxed(progress)) - squared * reciprocal;  // positive behind it
    float envelope = max(1.0 - abs(front) * (1.0 / kReach), 0.0);
    vec2 slope = away * (reciprocal * envelope * envelope * swell(front * 6.0));
    vec2 bent = mirrorAtEdges(uv + slope * 0.07 * min(vec2(tall, ratio), 1.0));
    vec4 color = mix(readInput(0, bent), readInput(1, bent), clamp(front * 3.5 + 0.5, 0.0, 1.0));
    float light = 1.0 + dot(slope, vec2(-0.25, -0.35));
    return vec4(min(color.rgb * light, color.aaa), color.a);
}
