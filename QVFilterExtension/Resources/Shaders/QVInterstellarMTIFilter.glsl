// Stars streak past a wormhole that shows the picture.
#include "color.glsl"
#include "frame.glsl"
#include "particles.glsl"

uniform float effectValue;
uniform float way;    // of the flight, 0..1 once around
uniform float surge;  // 0 drifting, 1 at full speed

// Streaks of light on `count` rays; `angle` in turns, `away` in shorter sides.
float stars(float angle, float away, float count, float seed) {
    float ray = floor(angle * count);
    vec4 draw = particleDraw(vec2(ray, 0.0), seed);
    float head = fract(draw.x + way * (1.0 + floor(draw.y * 2.99)));
    float front = head * head * 1.5;
    float length = (0.02 + 0.28 * surge) * (0.1 + front);
    float along = (front - away) / length;  // 0 at the head, 1 at the end of the tail
    float across = abs(fract(angle * count) - 0.3 - 0.4 * draw.z) * away / count * 6.2831853;
    float width = (0.0012 + 0.0026 * draw.w) * (0.4 + away);
    float fades = step(0.0, along) * max(1.0 - along, 0.0) * min(head * 5.0, 1.0) * min((1.0 - head) * 8.0, 1.0);
    return fades * max(1.0 - across / width, 0.0) * (0.5 + draw.w);
}

vec4 QVInterstellarMTIFilter(vec2 uv) {
    vec2 size = inputSize(0), perShortSide = size / min(size.x, size.y);
    vec2 p = (uv - 0.5) * perShortSide;
    float away = max(length(p), 1e-4);
    float depth = sqrt(effectValue);
    float mouth = mix(0.53 * length(perShortSide), 0.4, depth) * (1.0 + 0.12 * surge * depth);

    // Outside the mouth the picture lies inverted at its circle; inside it swells a little towards the rim.
    float ratio = away / mouth;
    float outside = smoothstep(0.985, 1.015, ratio);
    float inverted = 1.0 / (ratio * ratio);
    float swollen = 1.0 - 0.12 * depth * (1.0 - ratio * ratio);
    float grow = mix(swollen, inverted, step(1.0, ratio)) / (1.0 + 0.1 * surge * depth);
    vec2 place = 0.5 + p * grow / perShortSide;
    vec4 color = readInput(0, mirrorAtEdges(place));

    float angle = atan(p.y, p.x) * 0.15915494 + 0.5;
    float light = stars(angle, away, 40.0, 31.0) + stars(angle, away, 64.0, 32.0) + stars(angle, away, 104.0, 33.0);
    light *= min(depth * 3.0, 1.0) * smoothstep(0.25, 1.1, ratio);

    // Space: dark, with what is left of the picture as a cold nebula, brightest along the mouth.
    float beyond = max(ratio - 1.0, 0.0);
    vec3 nebula = mix(color.rgb, vec3(luma(color.rgb)), 0.3) * vec3(0.5, 0.65, 1.0);
    nebula *= 0.75 / (1.0 + 14.0 * beyond * beyond + 2.5 * beyond);
    color.rgb = mix(color.rgb, min(nebula, color.a), outside * min(depth * 3.0, 1.0));
    float rim = max(1.0 - abs(ratio - 1.0) * (ratio > 1.0 ? 9.0 : 22.0), 0.0) * min(depth * 3.0, 1.0);
    rim *= rim * (0.5 + 0.3 * surge);
    vec3 glow = rim * vec3(0.85, 0.93, 1.0) + light * vec3(0.86, 0.94, 1.0);
    color.rgb += min(glow, 1.0) * (color.a - color.rgb);
    return color;
}
