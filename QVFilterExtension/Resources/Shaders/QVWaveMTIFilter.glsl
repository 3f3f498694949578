// Seen through moving water: four trains of waves cross the picture, bend it, and catch the light on their slopes.
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVWaveMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 p = uv * perShortSide;
    // Directions and lengths have no common measure, so the surface does not repeat visibly.
    vec4 crests = vec4(dot(p, vec2(0.8, 3.7)), dot(p, vec2(3.1, -1.1)), dot(p, vec2(-2.4, 7.2)),
                       dot(p, vec2(7.0, 5.1)));
    vec4 slope = wave(crests + iTime * vec4(-0.72, 0.53, 0.95, -0.81));
    vec2 bend = slope.x * vec2(0.24, 1.0) + slope.y * vec2(0.95, -0.3) + slope.z * vec2(-0.15, 0.42) +
                slope.w * vec2(0.35, 0.25);
    vec2 from = uv + bend * (0.017 * effectValue) / perShortSide;
    vec4 color = readInput(0, 1.0 - abs(1.0 - abs(from)));  // mirrored at the borders
    float light = 0.055 * effectValue * dot(bend, vec2(-0.55, -0.85));
    return vec4(clamp(color.rgb + light * (color.rgb + 0.35 * color.a), vec3(0.0), color.aaa), color.a);
}
