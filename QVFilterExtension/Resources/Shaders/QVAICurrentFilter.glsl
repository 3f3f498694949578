// Electric arcs along an outline: the line is read where jags have moved it, so that its middle is an arc and its fall-off
// the glow around it. Input: the outline's line mask.
#include "displace.glsl"
#include "line.glsl"

uniform float iTime;
uniform float effectValue;
uniform vec3 lineColor;    // of the glow
uniform vec3 secondColor;  // of its far end

const float kLeaps = 12.0;  // a second

// Light of an arc: x its white core, y the glow.
vec2 arc(vec4 line, float width) {
    float near = line.r;
    float core = clamp((near - 1.0 + width) / (0.6 * width), 0.0, 1.0);
    float glow = near * near;
    return vec2(core * core, glow * glow * glow);
}

vec4 QVAICurrentFilter(vec2 uv) {
    vec2 size = outputSize(), scale = size / max(size.x, size.y);
    vec2 p = uv * scale;
    float beat = iTime * kLeaps, moment = floor(beat), fade = 1.0 - 0.45 * (beat - moment);
    float reach = 0.007 + 0.02 * effectValue;

    vec2 first = jags(p * 15.0, moment, 4) * reach;
    vec2 second = jags(p * 12.0 + 3.7, floor(beat * 0.7) + 500.0, 4) * reach * 1.5;
    vec2 third = jags(p * 7.0 + 1.3, floor(beat * 0.55) + 900.0, 5) * reach * 3.2;
    vec2 a = arc(readInput(0, uv + first / scale), 0.09) * fade;
    vec2 b = arc(readInput(0, uv + second / scale), 0.07);
    vec2 c = arc(readInput(0, uv + third / scale), 0.06);

    // Arcs come and go along the outline; the far one strikes in few places.
    vec4 draw = particleDraw(vec2(floor(beat * 0.55), 7.0), 5.0);
    vec2 where = p * vec2(1.9, 2.3) + draw.xy * 3.0;
    float gate = 0.5 + 0.5 * wave(where.x + 0.3 * wave(where.y)) * wave(where.y * 0.7 + draw.z);
    b *= clamp(gate * 2.6 - 0.7, 0.0, 1.0);
    c *= clamp(1.5 - gate * 3.4, 0.0, 1.0);

    vec2 sum = a + 0.85 * b + c;
    vec4 here = readHere(0);
    float halo = lineGlow(here) * here.a * (0.24 + 0.1 * fade);
    vec3 light = mix(secondColor, lineColor, min(sum.y * 1.6, 1.0)) * min(sum.y * 0.9 + halo, 1.0);
    light += vec3(min(sum.x, 1.0)) * mix(lineColor, vec3(1.0), 0.85);
    light = min(light, 1.0);
    return vec4(light, max(light.r, max(light.g, light.b)));
}
