// A digital signal that breaks in bursts.
#include "glitch.glsl"

uniform float effectValue;
uniform float draw;    // number of the damage that stands
uniform float phrase;  // number of the burst or rest that it belongs to

// 1 for the share `odds` of the draws, 0 for the others; for none when they are 0.
float chance(float drawn, float odds) { return step(drawn + 0.002, odds); }

vec4 QVGlitchMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec2 at = offBorders(uv);
    float bursts = step(particleDraw(vec2(phrase, 0.0), 5.0).x, 0.625);
    vec4 whole = particleDraw(vec2(draw, 1.0), 5.0);
    float damage = effectValue * mix(0.25, 0.7 + 0.3 * whole.x, bursts);

    vec4 high = particleDraw(vec2(floor(at.y * 5.0 + 3.0 * whole.y), draw), 6.0);
    vec4 low = particleDraw(vec2(floor(at.y * 30.0), draw), 7.0);
    float jump = (high.x - 0.5) * 0.22 * damage * chance(high.y, 0.66 * damage);
    jump += (low.x - 0.5) * 0.12 * damage * chance(low.y, 0.33 * damage);

    vec2 cells = 9.0 * size / min(size.x, size.y);
    vec4 block = particleDraw(floor(at * cells + 0.5 * whole.zw) + vec2(0.0, 64.0 * draw), 8.0);
    float broken = chance(block.x, 0.166 * damage);

    vec2 place = uv + vec2(jump, 0.0) + broken * (block.yz - 0.5) * 0.5;
    // A column that a band goes on with.
    float smeared = chance(high.z, 0.25 * damage) * step(high.w, place.x);
    place.x = mix(place.x, high.w, smeared);
    vec2 apart = vec2((0.004 + 0.018 * whole.w) * damage + 0.3 * abs(jump), 0.0);

    vec4 green = readPixel(0, wrappedPixel(place, size));
    vec4 red = readPixel(0, wrappedPixel(place - apart, size));
    vec4 blue = readPixel(0, wrappedPixel(place + apart, size));
    vec4 color = vec4(red.r, green.g, blue.b, max(green.a, max(red.a, blue.a)));
    // False colours: channels change places, the tones fall into few steps.
    vec3 steps = floor(color.gbr * 4.0 + 0.5) * 0.25;
    vec3 neon = min(steps * (0.6 + 1.2 * block.wyz), color.a);
    color.rgb = mix(color.rgb, neon, broken * step(0.45, block.w));
    color.rgb *= 1.0 + (0.22 * fract(floor(at.y * 135.0) * 0.5) * 2.0 - 0.2) * damage;
    color.rgb = min(color.rgb, color.a);
    return color;
}
