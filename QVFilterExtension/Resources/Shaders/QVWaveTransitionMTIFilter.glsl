// Ripples run outwards from the middle, bend the picture, catch the light, and turn the outgoing clip into the incoming one.
#include "easing.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float progress;  // eased
uniform float ratio;     // of the frame, width to height

vec4 QVWaveTransitionMTIFilter(vec2 uv) {
    vec2 aspect = vec2(max(ratio, 1.0), max(1.0 / ratio, 1.0));  // the shorter side is 1
    vec2 away = (uv - 0.5) * aspect;
    float radius = length(away), rim = 0.5 * length(aspect);
    float front = mix(-0.35, rim + 0.35, progress) - radius;  // 0 at the ripples' middle, positive behind it
    float envelope = max(1.0 - abs(front) * (1.0 / 0.35), 0.0);
    envelope *= envelope * (3.0 - 2.0 * envelope);
    float slope = wave(front * 6.5 + 0.25) * envelope;
    vec2 bent = uv + away / max(radius, 0.02) * (slope * 0.055) / aspect;
    bent = mirrorAtEdges(bent);
    vec4 color = mix(readInput(0, bent), readInput(1, bent), smootherstep(linearstep(-0.16, 0.16, front)));
    float light = 0.22 * slope * dot(away, vec2(-0.6, -0.8)) / max(radius, 0.02);
    return vec4(clamp(color.rgb + light * (color.rgb + 0.4 * color.a), vec3(0.0), color.aaa), color.a);
}
