// A damaged digital stream: slices slip, blocks lie where they do not belong, colours part, and the other clip breaks
// in block by block. Inputs: outgoing, incoming.
#include "borders.glsl"
#include "glitch.glsl"

uniform float progress;
uniform float start, duration;  // seconds

vec4 QVGlitchTransitionMTIFilter(vec2 uv) {
    vec2 frame = inputSize(0);
    Burst burst = burstAt(progress, start, duration);
    vec2 perShortSide = frame / min(frame.x, frame.y);
    vec2 p = offBorders(uv) * perShortSide;
    vec4 mood = particleDraw(vec2(burst.number, 1.0), 5.0);

    // Slices of two heights slip sideways; some of the thin ones hold a pixel for a while.
    vec4 thick = particleDraw(vec2(p.y * (4.0 + 10.0 * mood.x), burst.number), 11.0);
    vec4 thin = particleDraw(vec2(p.y * 54.0, burst.number), 13.0);
    float slipped = step(thick.y, 0.4 * burst.strength), torn = step(thin.y, 0.16 * burst.strength);
    vec2 moved = vec2((thick.x - 0.5) * slipped * 0.3 + (thin.x - 0.5) * torn * 0.16, 0.0);

    // Blocks of two sizes.
    vec2 grid = vec2(4.0, 7.0) * (1.0 + floor(mood.y * 2.0));
    vec2 coarse = floor(p * grid), fine = floor(p * 24.0);
    vec4 block = particleDraw(coarse, burst.number * 3.0 + 1.0);
    vec4 crumb = particleDraw(fine, burst.number * 3.0 + 2.0);
    float hit = step(block.z, 0.26 * burst.strength);
    float broken = step(crumb.z, 0.02 + 0.5 * hit) * step(0.01, burst.strength);
    moved += (block.xy - 0.5) * hit * vec2(0.36, 0.14) + (crumb.xy - 0.5) * broken * 0.09;

    vec2 place = uv + moved / perShortSide;
    float held = torn * step(thin.z, 0.45);
    place.x = mix(place.x, floor((offBorders(uv) + moved / perShortSide).x * 9.0) / 9.0 + 0.02, held);

    // The other clip: a patch is replaced once and for all, hit blocks run ahead or lag behind.
    float patchDraw = particleDraw(vec2(coarse.y, floor(coarse.x * 0.5)), 7.0).x;
    float turn = 0.5 + (patchDraw - 0.5) * 0.34 + (block.w - 0.5) * hit * 0.5;
    float incoming = step(turn, burst.progress);

    float apart = burst.strength * (0.003 + 0.022 * mood.z * mood.z) + (slipped + hit) * 0.006 * burst.strength;
    vec2 split = vec2(apart, apart * (mood.w - 0.5) * 0.3) / perShortSide;
    vec2 size1 = inputSize(1);
    ivec2 red0 = wrappedPixel(place + split, frame), green0 = wrappedPixel(place, frame);
    ivec2 blue0 = wrappedPixel(place - split, frame);
    ivec2 red1 = wrappedPixel(place + split, size1), green1 = wrappedPixel(place, size1);
    ivec2 blue1 = wrappedPixel(place - split, size1);
    vec4 before = readPixel(0, green0), after = readPixel(1, green1);
    before.r = readPixel(0, red0).r;
    before.b = readPixel(0, blue0).b;
    after.r = readPixel(1, red1).r;
    after.b = readPixel(1, blue1).b;
    vec4 color = mix(before, after, incoming);

    // Lost differences: a block keeps few levels, or its colours are exchanged; slices flare.
    vec3 levels = floor(color.rgb * 5.0 + 0.5) * 0.2;
    color.rgb = mix(color.rgb, levels, hit * step(block.w, 0.5));
    color.rgb = mix(color.rgb, color.gbr, broken * step(crumb.w, 0.3));
    color.rgb *= 1.0 + torn * (thin.w - 0.4) * 0.6;
    color.rgb = clamp(color.rgb, 0.0, color.a);

    vec4 still = mix(readHere(0), readHere(1), incoming);
    return mix(still, color, step(0.01, burst.strength));
}
