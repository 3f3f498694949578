// The foot of the picture burns: flames lick up, embers fly, and the scene glows in their unsteady light. More
// strength, higher and brighter flames.
#include "noise.glsl"
#include "particles.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

// Glowing sparks that rise, at most one in a cell; `cells` along the shorter side.
float embers(vec2 p, float cells, float rise, float seed) {
    vec2 place = vec2(p.x + 0.03 * wave(p.y * 1.7 + iTime * 0.3 + seed), p.y + iTime * rise) * cells;
    vec4 draw = particleDraw(place, seed);
    vec2 away = fract(place) - 0.25 - 0.5 * draw.xy;
    float radius = 0.03 + 0.05 * draw.x;
    float spark = max(1.0 - dot(away, away) / (radius * radius), 0.0);
    float flicker = 0.6 + 0.4 * wave(iTime * (2.0 + 3.0 * draw.y) + draw.x);
    return spark * flicker * step(draw.z, 0.1 + 0.25 * effectValue);
}

vec4 QVFireMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float perShortSide = 1.0 / min(size.x, size.y);
    vec2 p = uv * size * perShortSide;
    float up = (1.0 - uv.y) * size.y * perShortSide;  // from the foot, short sides
    float height = (0.16 + 0.66 * effectValue) * min(size.y * perShortSide, 1.25);
    float rel = up / height;

    // Big tongues sway slowly; small ones ride on them and rise faster, drawn out as they do.
    float big = valueNoise(vec2(p.x * 3.1, up * 1.5 - iTime * 1.1), 1.0);
    vec2 q = vec2(p.x + (big - 0.5) * (0.1 + 0.45 * up), up);
    float mid = valueNoise(vec2(q.x * 7.3, q.y * 2.3 - iTime * 2.0), 2.0);
    float small = valueNoise(vec2(q.x * 15.0 + mid * 1.5, q.y * 5.0 - iTime * 3.6), 3.0);
    float fine = valueNoise(vec2(q.x * 31.0 + small * 1.5, q.y * 12.0 - iTime * 5.8), 4.0);
    float tongue = 1.0 - abs(2.0 * mid - 1.0);  // ridges: filaments instead of clouds
    float body = big * 0.36 + tongue * 0.3 + small * 0.24 + fine * 0.1;

    float flame = max(body * 1.5 + 0.12 - rel * (0.55 + 0.3 * rel), 0.0) * clamp(body * 2.6 - rel * 0.75, 0.0, 1.0);
    float heat = min(flame * (0.6 + 0.2 * effectValue + 0.3 * fine), 1.0);
    vec3 fire = clamp(vec3(heat * 2.3 - 0.1, heat * heat * 1.75 - 0.08, heat * heat * heat * heat * 0.8), 0.0, 1.0);

    float spark = max(embers(p, 9.0, 0.34, 11.0), 0.8 * embers(p, 15.0, 0.24, 12.0));
    spark *= clamp(1.4 - up / (height * 2.2), 0.0, 1.0);

    vec4 color = readHere(0);
    float unsteady = 0.86 + 0.09 * wave(iTime * 2.3) + 0.05 * wave(iTime * 5.9 + 0.3);
    float glow = unsteady * effectValue / (1.0 + 1.6 * rel * rel);
    vec3 rgb = color.rgb * (1.0 - 0.55 * effectValue) * (1.0 + glow * vec3(1.1, 0.35, -0.25));
    rgb += color.a * glow * vec3(0.17, 0.055, 0.005);
    rgb *= 1.0 - 0.8 * max(min(fire.r * 1.2, 1.0), spark);
    vec3 light = max(fire, spark * vec3(1.0, 0.62, 0.2));
    rgb += light - rgb * light;  // screen
    float alpha = max(color.a, light.r);
    return vec4(clamp(rgb, vec3(0.0), vec3(alpha)), alpha);
}
