// A television set that loses one station and finds the other: snow, lines that tear, a picture that rolls, colour
// that runs to the right. Inputs: outgoing, incoming.
#include "borders.glsl"
#include "color.glsl"
#include "coords.glsl"
#include "film.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float progress;
uniform float start, duration;  // seconds

// Smooth random values along the lines, -1..1.
float alongLines(float y, float tick, float seed) {
    float cell = floor(y), t = smoothstep(0.0, 1.0, y - cell);
    return mix(particleDraw(vec2(cell, tick), seed).x, particleDraw(vec2(cell + 1.0, tick), seed).x, t) * 2.0 - 1.0;
}

vec4 QVTVNoiseTransitionMTIFilter(vec2 uv) {
    vec2 frame = inputSize(0);
    float time = start + progress * duration, tick = timeSlot(time, 25.0);
    float lost = smoothstep(0.0, 0.5, progress) * (1.0 - smoothstep(0.5, 1.0, progress));
    float unit = unitPixels(frame);

    // The vertical hold slips faster and faster, and catches slower and slower.
    float side = step(0.5, progress), away = 1.0 - abs(progress * 2.0 - 1.0);
    float y = uv.y + away * away * away * mix(1.6, -1.6, side);
    float row = y - floor(y);
    float seam = min(row, 1.0 - row);
    float bar = clamp((0.05 - seam) * 60.0, 0.0, 1.0) * min(lost * 5.0, 1.0);

    // Lines tear: bands that swing out, jitter of single lines, the upper edge bent like a flag.
    float band = alongLines(uv.y * 7.0 + tick * 0.37, tick, 61.0);
    float jitter = particleDraw(vec2(offBorders(uv).y * frame.y / (2.0 * unit), tick), 67.0).x - 0.5;
    float flag = max(1.0 - row * 7.0, 0.0);
    float swing = band * band * band * 0.22 + jitter * 0.016 + flag * flag * 0.16;
    vec2 place = mirrorRepeat(vec2(uv.x + swing * lost * lost, row));

    vec2 size1 = inputSize(1);
    vec4 sharp = mix(readInput(0, place), readInput(1, place), side);
    // Colour has a fraction of the sharpness and comes late.
    vec2 late = vec2(14.0 * unit * lost, 0.0) / frame;
    vec2 near = place - late * 0.6, far = place - late * 2.2;
    vec4 before = readPixel(0, pixelAt(near * frame)) + readPixel(0, pixelAt(far * frame));
    vec4 after = readPixel(1, pixelAt(near * size1)) + readPixel(1, pixelAt(far * size1));
    vec3 blunt = mix(before, after, side).rgb * 0.5;
    float brightness = luma(sharp.rgb);
    vec3 color = mix(sharp.rgb, brightness + (blunt - luma(blunt)) * 1.25, min(lost * 3.0, 1.0));

    // Snow: short dashes on the lines, more of it where the picture tears.
    vec2 grain = offBorders(uv) * frame / (vec2(3.2, 2.1) * max(unit, 0.5));
    vec4 flake = particleDraw(grain, tick + 71.0);
    float snow = flake.x * flake.y * 1.5 + step(0.93, flake.z) * 0.35;
    float share = clamp(lost * lost * (0.72 + 0.35 * abs(band)) + bar * lost * 0.3, 0.0, 0.94);
    color = mix(color * (1.0 - bar * 0.85), vec3(snow) + vec3(-0.015, 0.0, 0.02), share);

    // Lines of the tube, and a soft dark bar of hum that wanders.
    float lines = 0.5 + 0.5 * wave(uv.y * frame.y / (6.0 * max(unit, 0.5)));
    float hum = 0.5 + 0.5 * wave(uv.y * 0.8 - time * 1.3);
    color *= 1.0 - lost * (0.3 * lines + 0.25 * hum * hum);
    return vec4(clamp(color, vec3(0.0), vec3(sharp.a)), sharp.a);
}
