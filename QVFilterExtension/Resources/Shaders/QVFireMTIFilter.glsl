// The foot of the picture burns: flames lick up, embers fly, and the scene glows in their unsteady light. More
// strength, higher and brighter flames.
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

// How hot the flames of a layer are, 0..1, hottest at their foot. `x` and `up`, from the foot, in short sides; `gust` of
// the air there, -0.5..0.5, and in w the threads that it draws, 0..1; `height` of the highest tongues.
float flames(float x, float up, vec4 gust, float height, float width, float rise, float seed) {
    float rel = up / height, time = iTime * rise;
    // The air carries the tongues away as it rises, in large turns and in small ones.
    vec4 lick = smoothDraws(vec2(x * 6.5 / width + 1.5 * gust.x, up * 4.2 / width - time * 2.1), seed + 1.0);
    float bent = x + width * (0.5 * gust.y * (0.3 + rel) + 0.13 * (lick.x - 0.5) * min(3.0 * rel, 1.0));
    // Each tongue is as high as its place says; it sinks and shoots up.
    vec4 tongue = smoothDraws(vec2(bent * 6.0 / width, time * 1.4), seed + 2.0);
    float top = 0.16 + 0.7 * tongue.x + 0.3 * tongue.y * gust.z;
    // Ridges are threads of fire; between them the flame is torn, the more the higher.
    float ridge = 1.0 - abs(2.0 * mix(gust.w, lick.y, 0.45) - 1.0);
    float torn = (1.0 - ridge) * min(1.6 * rel / top, 1.0);
    return clamp((1.0 - rel / top) * 1.3 - 0.75 * torn + 0.12 * (ridge - 0.5), 0.0, 1.0);
}

// The colours of burning gas by its heat: dark red at the tips, orange, yellow, nearly white at the hottest.
vec3 burning(float heat) {
    float hot = heat * heat;
    return clamp(vec3(heat * 2.6, hot * 2.1 - 0.02, hot * hot * 1.15 - 0.12), 0.0, 1.0);
}

vec4 QVFireMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float perShortSide = 1.0 / min(size.x, size.y);
    vec2 p = uv * size * perShortSide;
    float up = (1.0 - uv.y) * size.y * perShortSide;  // from the foot, short sides
    float height = (0.2 + 0.62 * effectValue) * min(size.y * perShortSide, 1.25);
    float rel = up / height;

    // Two walls of fire, the one behind higher and darker.
    vec3 gust = smoothDraws(vec2(p.x * 2.6, up * 1.8 - iTime * 0.9), 1.0).xyz - 0.5;
    vec4 thread = smoothDraws(vec2((p.x + 0.4 * gust.y * (0.3 + rel)) * 20.0, up * 4.0 - iTime * 3.0), 2.0);
    float behind = flames(p.x, up, vec4(gust, thread.x), height * 1.25, 1.0, 0.8, 3.0);
    float front = flames(p.x + 7.3, up, vec4(gust.zxy, thread.y), height * 0.8, 0.7, 1.15, 6.0);
    vec3 fire = burning(0.12 + behind * 0.58) * smoothstep(0.0, 0.34, behind);
    fire = mix(fire, burning(0.3 + 0.62 * front), smoothstep(0.0, 0.3, front));
    fire *= min(0.7 + 0.6 * effectValue, 1.0);

    float spark = max(embers(p, 9.0, 0.34, 11.0), 0.8 * embers(p, 15.0, 0.24, 12.0));
    spark *= clamp(1.4 - up / (height * 2.2), 0.0, 1.0);

    vec4 color = readHere(0);
    float unsteady = 0.86 + 0.09 * wave(iTime * 2.3) + 0.05 * wave(iTime * 5.9 + 0.3);
    float glow = unsteady * effectValue / (1.0 + 1.6 * rel * rel);
    vec3 rgb = color.rgb * (1.0 - 0.5 * effectValue) * (1.0 + glow * vec3(1.1, 0.35, -0.25));
    rgb += color.a * glow * vec3(0.17, 0.055, 0.005);
    rgb *= 1.0 - 0.85 * max(min(fire.r * 1.2, 1.0), 0.5 * spark * spark);
    vec3 light = max(fire, spark * vec3(1.0, 0.62, 0.2));
    rgb += light - rgb * light;  // screen
    float alpha = max(color.a, light.r);
    return vec4(clamp(rgb, vec3(0.0), vec3(alpha)), alpha);
}
