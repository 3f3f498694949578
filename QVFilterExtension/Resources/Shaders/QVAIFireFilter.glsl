// Flames that rise from an outline: each place asks whether the line burns below it, further and further down along a
// way that sways, and noise that rises tears the flames apart. Input: the outline's line mask.
#include "noise.glsl"
#include "particles.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;
uniform vec3 lineColor;    // of the flames' body
uniform vec3 secondColor;  // of their tips

float embers(vec2 p, float cells, float rise, float seed) {
    vec2 place = vec2(p.x + 0.012 * wave(p.y * 5.0 + iTime * 0.6 + seed), p.y + iTime * rise) * cells;
    vec4 draw = particleDraw(place, seed);
    vec2 away = fract(place) - 0.25 - 0.5 * draw.xy;
    float radius = 0.05 + 0.07 * draw.x;
    return max(1.0 - dot(away, away) / (radius * radius), 0.0) * step(draw.z, 0.3) *
           (0.6 + 0.4 * wave(iTime * (2.0 + 3.0 * draw.y) + draw.x));
}

vec4 QVAIFireFilter(vec2 uv) {
    vec2 size = outputSize(), scale = size / max(size.x, size.y);
    vec2 p = uv * scale;
    float height = 0.045 + 0.125 * effectValue;

    // Tongues: drawn out upwards, the finer ones faster.
    float big = valueNoise(vec2(p.x * 13.0, p.y * 5.0 + iTime * 1.5), 1.0);
    float middle = valueNoise(vec2(p.x * 31.0 + big * 1.5, p.y * 11.0 + iTime * 3.6), 2.0);
    float fine = valueNoise(vec2(p.x * 67.0 + middle * 1.5, p.y * 25.0 + iTime * 6.8), 3.0);
    float tongue = 1.0 - abs(2.0 * middle - 1.0);
    float torn = big * 0.4 + tongue * 0.35 + fine * 0.25;
    vec2 sway = vec2((big - 0.5) * 0.55 + (middle - 0.5) * 0.3, 0.55 + 0.9 * torn) * height / scale;

    float a = readHere(0).r, b = readInput(0, uv + sway * 0.25).r, c = readInput(0, uv + sway * 0.5).r;
    float d = readInput(0, uv + sway * 0.75).r, e = readInput(0, uv + sway).r;
    float low = a * a, source = low * 0.8 + b * 0.42 + c * 0.36 + d * 0.3 + e * 0.24;
    float heat = clamp(source * (0.2 + 1.1 * torn) - 0.45 * (1.1 - torn), 0.0, 1.0);

    // Hot near the outline, and where tongues are thick; red where they end.
    float hot = clamp(heat * (0.4 + 0.75 * tongue) + 0.18 * low * fine, 0.0, 1.0);
    vec3 light = mix(secondColor, lineColor, clamp(hot * 2.1 - 0.25, 0.0, 1.0)) * min(heat * 2.2, 1.0);
    light += (vec3(1.0, 0.96, 0.8) - light) * clamp(hot * hot * 1.7 - 0.42, 0.0, 1.0);
    float spark = (embers(p, 34.0, 0.16, 11.0) + embers(p + 0.3, 55.0, 0.11, 12.0)) * min(3.0 * (c + e), 1.0);
    light = max(light, lineColor * min(spark * 1.4, 1.0));
    return vec4(light, max(light.r, max(light.g, light.b)));
}
