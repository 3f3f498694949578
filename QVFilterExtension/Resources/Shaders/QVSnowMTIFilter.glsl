// Snow falls in five layers, from fine flakes far away to a few large ones close to the lens and out of focus. It
// drifts with the wind and sways. More strength, more flakes and a colder, hazier scene.
#include "color.glsl"
#include "particles.glsl"

uniform float iTime;
uniform float effectValue;

// Cover by a layer of `cells` flakes along the shorter side. `fall` and `drift` are in cells a second.
float flakes(vec2 p, float cells, float fall, float drift, float hardness, float seed) {
    vec2 place = p * cells;
    place.x -= place.y * 0.12 + iTime * drift;
    float column = floor(place.x);
    // Columns fall at their own pace, so that no rows can be seen.
    float pace = fract(column * 0.618034 + seed * 0.37);
    place.y -= iTime * fall * (0.8 + 0.4 * pace) - pace * 9.0;
    vec4 draw = particleDraw(place, seed);
    float sway = abs(fract(iTime * (0.15 + 0.2 * draw.y) + draw.x) * 2.0 - 1.0);
    vec2 away = fract(place) - 0.5 - vec2((draw.x - sway) * 0.3, (draw.y - 0.5) * 0.45);
    float radius = (0.09 + 0.13 * draw.w) * (0.8 + 0.3 * effectValue);
    float disc = max(1.0 - dot(away, away) / (radius * radius), 0.0) * step(draw.z, 0.1 + 0.75 * effectValue);
    return min(disc * hardness, 1.0);
}

vec4 QVSnowMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 p = uv * size / min(size.x, size.y);
    vec4 color = readHere(0);

    vec3 cold = mix(vec3(luma(color.rgb)), color.rgb, 0.6) * vec3(0.86, 0.94, 1.02);
    vec3 rgb = mix(color.rgb, cold, 0.55 * effectValue);
    rgb += 0.16 * effectValue * (vec3(0.8, 0.86, 0.94) * color.a - rgb);

    float clear = 1.0 - 0.5 * flakes(p, 29.0, 2.9, 0.9, 0.9, 1.0);
    clear *= 1.0 - 0.75 * flakes(p, 17.0, 2.6, 0.7, 1.0, 2.0);
    clear *= 1.0 - 0.9 * flakes(p, 9.5, 2.3, 0.55, 1.2, 3.0);
    clear *= 1.0 - 0.7 * flakes(p, 5.3, 1.8, 0.45, 1.3, 4.0);
    clear *= 1.0 - 0.3 * flakes(p, 2.6, 1.3, 0.3, 1.6, 5.0);
    float cover = 1.0 - clear;
    return vec4(min(mix(rgb, vec3(0.97, 0.985, 1.0), cover), 1.0), mix(color.a, 1.0, cover));
}
