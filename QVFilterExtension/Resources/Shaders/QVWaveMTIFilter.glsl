// Seen through moving water: four trains of waves cross the picture, bend it, and gather the light in a net of bright
// lines.
#include "frame.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVWaveMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 p = uv * perShortSide;
    // Directions and lengths have no common measure, so the surface does not repeat visibly.
    vec4 crests = vec4(dot(p, vec2(0.7, 2.3)), dot(p, vec2(2.2, -0.9)), dot(p, vec2(-1.9, 4.6)),
                       dot(p, vec2(4.7, 3.1)));
    vec4 slope = wave(crests + iTime * vec4(-0.42, 0.35, 0.61, -0.54));
    vec2 bend = slope.x * vec2(0.24, 1.0) + slope.y * vec2(0.95, -0.3) + slope.z * vec2(-0.15, 0.42) +
                slope.w * vec2(0.35, 0.25);
    vec2 from = uv + bend * (effectValue * (0.042 - 0.012 * effectValue)) / perShortSide;
    vec4 color = readInput(0, mirrorAtEdges(from));
    // On the ground it lights, three trains at equal angles, themselves bent, leave a net of cells.
    vec2 ground = p + 0.11 * bend;
    vec4 net = wave(vec4(dot(ground, vec2(3.2, 0.4)), dot(ground, vec2(-1.9, 2.6)), dot(ground, vec2(-1.3, -3.0)),
                         dot(ground, vec2(5.3, 4.1))) +
                    iTime * vec4(0.31, 0.37, 0.28, -0.46));
    float gathered = max(1.0 - 0.85 * abs(net.x + net.y + net.z + 0.5 * net.w), 0.0);
    gathered *= gathered * gathered * (0.6 + 0.4 * slope.x);
    vec3 light = vec3(0.06, 0.075, 0.07) * dot(bend, vec2(-0.55, -0.85)) + vec3(0.26, 0.33, 0.3) * gathered;
    vec3 water = mix(vec3(1.0), vec3(0.72, 0.93, 0.97), effectValue) * color.rgb;
    return vec4(clamp(water + effectValue * light * (color.rgb + 0.3 * color.a), vec3(0.0), color.aaa), color.a);
}
