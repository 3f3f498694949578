// Dust that an outline sheds: three sizes of grains, more of them the nearer they are; they float up, sway and twinkle.
// Input: the outline's line mask.
#include "line.glsl"
#include "particles.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;
uniform vec3 lineColor;
uniform vec3 secondColor;

// The grain of the cell that a place lies in: the middle (longer sides), size and whether it is there, phase.
struct Grain {
    vec2 middle;
    float size, chance, phase;
};

Grain grainAt(vec2 p, float cells, float rise, float seed) {
    vec2 flow = vec2(0.012 * wave(p.y * 2.3 + iTime * 0.17 + seed), -iTime * rise);
    vec2 cell = floor((p - flow) * cells);
    vec4 draw = particleDraw(cell, seed);
    return Grain((cell + 0.5 + (draw.xy - 0.5) * 0.55) / cells + flow, (0.15 + 0.2 * draw.w) / cells, draw.z,
                 draw.x + draw.y);
}

float grainLight(Grain grain, vec2 p, float near) {
    vec2 away = p - grain.middle;
    float spark = max(1.0 - dot(away, away) / (grain.size * grain.size), 0.0);
    float twinkle = 0.55 + 0.45 * wave(iTime * (0.5 + grain.phase) + grain.phase * 7.0);
    // They appear gently, so that none flickers where the line is as near as its chance.
    float seen = clamp((near * (0.35 + 0.85 * effectValue) - 0.01 - grain.chance) * 16.0, 0.0, 1.0);
    return spark * spark * twinkle * seen;
}

vec4 QVAIContourNoiseFilter(vec2 uv) {
    vec2 size = outputSize(), scale = size / max(size.x, size.y);
    vec2 p = uv * scale;
    Grain small = grainAt(p, 190.0, 0.012, 1.0), middle = grainAt(p, 105.0, 0.02, 2.0);
    Grain large = grainAt(p, 48.0, 0.03, 3.0);
    float nearSmall = lineGlow(readInput(0, small.middle / scale));
    float nearMiddle = lineGlow(readInput(0, middle.middle / scale));
    float nearLarge = lineGlow(readInput(0, large.middle / scale));
    vec4 here = readHere(0);
    float fine = grainLight(small, p, nearSmall * 1.6) + grainLight(middle, p, nearMiddle);
    float bright = grainLight(large, p, nearLarge * 0.75);
    float haze = lineGlow(here) * here.a;
    haze *= haze * haze * (0.35 + 0.45 * effectValue);

    vec3 tint = mix(secondColor, lineColor, min(haze + 1.2 * nearMiddle, 1.0));
    vec3 light = tint * min(1.6 * fine + haze, 1.0) + mix(lineColor, vec3(1.0), 0.7) * bright;
    light += (vec3(1.0) - light) * min(fine * fine, 1.0) * 0.8;
    light = min(light, 1.0);
    return vec4(light, max(light.r, max(light.g, light.b)));
}
