// Film that was projected too often: it weaves in the gate, has faded, is scratched, and dirt passes over it. The
// strength adds wear of every kind.
#include "color.glsl"
#include "film.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVDamageFilmMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 p = uv * perShortSide;
    vec3 projector = projectorState(iTime);
    vec2 reach = 0.012 * effectValue / perShortSide;
    vec4 color = readInput(0, 0.5 + (uv - 0.5) * (1.0 - 2.0 * reach) + projector.xy * reach);

    // The cyan layer goes first: blacks turn brown, whites cream.
    vec3 faded = mix(vec3(luma(color.rgb)), color.rgb, 0.55) * vec3(0.93, 0.82, 0.66) +
                 color.a * vec3(0.085, 0.055, 0.035);
    vec3 rgb = mix(color.rgb, faded, 0.3 + 0.7 * effectValue);

    vec2 fromCenter = uv * 2.0 - 1.0;
    float r2 = dot(fromCenter, fromCenter) * 0.5;
    rgb *= (1.0 - effectValue * r2 * r2 * 0.6) * (1.0 + projector.z * 0.14 * effectValue);

    // A dark stain, a smaller one and a bare patch on each frame of film, with ragged outlines.
    float film = timeSlot(iTime, 12.0);
    vec4 draw = particleDraw(vec2(film, 0.0), 71.0);
    vec4 bumps = wave(vec4(dot(p, vec2(13.0, 5.0)), dot(p, vec2(-7.0, 17.0)), dot(p, vec2(31.0, 19.0)),
                           dot(p, vec2(-23.0, 37.0))) + draw * 9.0);
    float ragged = 0.5 + 0.25 * (bumps.x + bumps.y) * (1.0 + 0.4 * bumps.z) + 0.12 * (bumps.z + bumps.w);
    vec2 toStain = p - draw.xy * perShortSide, toSmall = p - draw.yz * perShortSide;
    vec2 toBare = p - draw.zx * perShortSide;
    float stainSize = (0.01 + 0.05 * effectValue) * draw.w, smallSize = 0.03 * effectValue * draw.x;
    float bareSize = (0.005 + 0.03 * effectValue) * fract(draw.y * 7.0);
    float stain = 1.6 - dot(toStain, toStain) / (stainSize * stainSize + 1e-6) - ragged * 1.8;
    stain = max(stain, 1.6 - dot(toSmall, toSmall) / (smallSize * smallSize + 1e-6) - ragged * 1.8);
    float bare = 1.5 - dot(toBare, toBare) / (bareSize * bareSize + 1e-6) - ragged * 1.8;

    // Specks: at most one in a cell, anew on each frame of film.
    vec2 place = p * 9.0;
    vec4 speckDraw = particleDraw(place, film);
    vec2 away = (fract(place) - 0.2 - 0.6 * speckDraw.xy) * vec2(1.0, 0.5 + speckDraw.y);
    float radius = 0.02 + 0.05 * speckDraw.w;
    float speck = 2.0 * (1.0 - dot(away, away) / (radius * radius)) * step(speckDraw.z, 0.03 + 0.09 * effectValue);

    float width = max(0.001, 1.0 / size.x);
    float bright = filmScratch(uv, iTime, 1.3, width, 41.0);
    float black = filmScratch(uv, iTime + 0.71, 0.9, width * 1.5, 47.0);

    float wear = 0.3 + 0.6 * effectValue;
    float dark = clamp(max(max(stain * 3.0, speck), black * 0.7), 0.0, 1.0) * wear;
    float light = clamp(max(bare * 3.0, bright * 0.8), 0.0, 1.0) * wear;
    rgb = mix(rgb, color.a * vec3(0.06, 0.04, 0.03), dark);
    rgb = mix(rgb, color.a * vec3(1.0, 0.96, 0.86), light);
    return vec4(min(rgb, color.aaa), color.a);
}
