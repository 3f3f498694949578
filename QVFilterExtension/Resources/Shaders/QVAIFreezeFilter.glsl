// Frost over a cold scene: it has grown in from the borders, its crystals glint, and mist drifts before it. Inputs: the
// scene, the frost.
#include "particles.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

// Frost and mist need no finer values.
float softNoise(vec2 p, float seed) { return smoothDraws(p, seed).x; }

vec4 QVAIFreezeFilter(vec2 uv) {
    vec2 size = outputSize();
    float shortSide = min(size.x, size.y);
    vec2 p = uv * size / shortSide, span = size / shortSide;
    vec4 scene = readHere(0), ice = readHere(1);

    // Crystals go ahead of the sheet.
    vec2 inset = max(0.7 - min(p, span - p), 0.0);
    float depth = 0.7 - length(inset) + 0.22 * softNoise(p * 4.5, 6.0);
    float grown = clamp((0.1 + 0.62 * effectValue - depth) * 4.5 + 1.3 * ice.a - 0.35, 0.0, 1.0);
    ice *= grown * min(effectValue * 6.0, 1.0);

    float drift = softNoise(vec2(p.x * 1.7 + iTime * 0.13, p.y * 2.6 - iTime * 0.05), 4.0);
    float curl = softNoise(vec2(p.x * 3.9 + drift - iTime * 0.21, p.y * 5.2), 5.0);
    float mist = drift * (0.4 + 0.6 * curl) * (0.25 + 0.75 * uv.y) * 0.42 * effectValue;

    vec2 cells = p * 95.0;
    vec4 draw = particleDraw(cells, 9.0);
    vec2 away = abs(fract(cells) - 0.5 - (draw.xy - 0.5) * 0.5);
    float spark = max(1.0 - 5.0 * max(away.x, away.y), 0.0) + max(1.0 - 22.0 * min(away.x, away.y), 0.0) *
                  max(1.0 - 2.6 * max(away.x, away.y), 0.0);
    float glint = wave(iTime * (0.25 + 0.5 * draw.w) + draw.x);
    spark *= step(draw.z, 0.16) * max(glint * 2.0 - 1.0, 0.0) * ice.a;

    vec3 color = scene.rgb * (1.0 - ice.a) + ice.rgb * mix(scene.a, 1.0, ice.a);
    color += (vec3(0.86, 0.94, 1.0) * scene.a - color) * mist;
    color += (vec3(1.0) - color) * min(spark, 1.0) * scene.a;
    float alpha = mix(scene.a, 1.0, ice.a);
    return vec4(min(color, alpha), alpha);
}
