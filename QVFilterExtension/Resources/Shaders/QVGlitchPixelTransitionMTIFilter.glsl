// Pixels grow to blocks, patch by patch and level by level; at their largest they are swapped for the other clip's,
// and shrink again. Inputs: outgoing, incoming.
#include "borders.glsl"
#include "glitch.glsl"

uniform float progress;
uniform float start, duration;  // seconds

vec4 QVGlitchPixelTransitionMTIFilter(vec2 uv) {
    vec2 frame = inputSize(0);
    Burst burst = burstAt(progress, start, duration);
    vec2 perShortSide = frame / min(frame.x, frame.y);
    vec2 p = offBorders(uv) * perShortSide;

    // A patch has its own time; its blocks are halves of halves of it. 0: whole, 6: a 64th, above: not seen.
    vec4 patchDraw = particleDraw(floor(p * 5.0), 41.0);
    float fromMiddle = abs(progress * 2.0 - 1.0);
    float fineness = (fromMiddle * 1.35 + (patchDraw.x - 0.5) * 0.45) * 6.5 + 0.6;
    vec4 flicker = particleDraw(floor(p * 5.0), burst.number + 43.0);
    float level = floor(max(fineness + (flicker.y - 0.5) * 1.6, 0.0));
    float blocks = 5.0 * exp2(min(level, 7.0));

    vec2 cell = floor(p * blocks);
    vec4 draw = particleDraw(cell, 47.0 + level), spark = particleDraw(cell, burst.number + 53.0);
    // Large blocks jump to a neighbour's place now and then.
    float jumps = step(spark.z, 0.14) * step(level, 3.0);
    vec2 corner = (cell + (floor(spark.xy * 3.0) - 1.0) * jumps) / (blocks * perShortSide);
    vec2 side = 1.0 / (blocks * perShortSide);
    float incoming = step(0.32 + 0.36 * draw.x, progress);

    // The mean of four places speaks for a block.
    vec2 size1 = inputSize(1);
    vec2 a = corner + side * vec2(0.27, 0.31), b = corner + side * vec2(0.74, 0.24);
    vec2 c = corner + side * vec2(0.22, 0.77), d = corner + side * vec2(0.69, 0.71);
    vec4 before = readPixel(0, pixelAt(a * frame)) + readPixel(0, pixelAt(b * frame)) +
                  readPixel(0, pixelAt(c * frame)) + readPixel(0, pixelAt(d * frame));
    vec4 after = readPixel(1, pixelAt(a * size1)) + readPixel(1, pixelAt(b * size1)) +
                 readPixel(1, pixelAt(c * size1)) + readPixel(1, pixelAt(d * size1));
    vec4 color = mix(before, after, incoming) * 0.25;

    // Each block is lit by itself, few in false colours.
    vec3 tint = 1.0 + (spark.yzx - 0.5) * step(spark.w, 0.1) * 1.4 + (draw.z - 0.5) * 0.16;
    color.rgb = clamp(color.rgb * tint, 0.0, color.a);

    vec4 still = mix(readHere(0), readHere(1), step(0.5, progress));
    return mix(color, still, step(6.5, level));
}
