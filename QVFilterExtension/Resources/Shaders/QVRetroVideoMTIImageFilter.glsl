// Video of an early pocket camera.
#include "borders.glsl"
#include "color.glsl"
#include "film.glsl"
#include "frame.glsl"

uniform float iTime;
uniform float effectValue;

const float kLines = 480.0;  // of the frame's shorter side at strength 0; 300 at 1

// How far a column's brightest parts clip.
float clipped(ivec2 p) {
    vec3 c = readPixel(0, p).rgb;
    return max(c.r + c.g + c.b - 2.55, 0.0);
}

vec4 QVRetroVideoMTIImageFilter(vec2 uv) {
    vec2 size = outputSize();
    float e = effectValue;
    float block = max(min(size.x, size.y) / (kLines - 180.0 * e), 1.0);
    vec2 cell = floor(offBorders(uv) * size / block);
    float field = timeSlot(iTime, 25.0);
    // Two fields: every other line is a moment late, and trembles sideways.
    float odd = mod(cell.y, 2.0);
    vec4 line = particleDraw(vec2(cell.y, 1.0), field);
    float comb = odd * (0.10 + 0.40 * e) * line.x;
    ivec2 p = ivec2((cell + vec2(0.5 + comb, 0.5)) * block);
    int b = int(block + 0.5);

    vec4 here = readPixel(0, p);
    vec4 left = readPixel(0, p - ivec2(b, 0)), right = readPixel(0, p + ivec2(b, 0));
    vec4 far = readPixel(0, p + ivec2(3 * b, 0));
    // Drawn sharp: dark and light rims along upright edges.
    vec3 around = 0.5 * (left.rgb + right.rgb);
    float rim = luma(here.rgb - around);
    float grey = luma(here.rgb) + clamp(rim * (1.1 + 1.2 * e), -0.13, 0.13);
    // Colour has a quarter of the lines.
    vec3 chroma = 0.5 * (around + 0.5 * (here.rgb + far.rgb));
    chroma -= luma(chroma);

    float spread = grey * (1.0 + 0.24 * e) + 0.02;
    float soft = spread - max(spread - 0.82, 0.0) * 0.45;
    vec3 c = vec3(soft) + chroma * (1.08 + 0.22 * e);
    // Cool shadows, slightly green middle tones.
    c += (1.0 - soft) * vec3(-0.012, 0.004, 0.040) * (0.5 + e) + soft * (1.0 - soft) * vec3(-0.02, 0.05, 0.03) * e;
    // Violet where a clipped edge begins.
    c += max(luma(right.rgb) - luma(here.rgb) - 0.18, 0.0) * e * vec3(0.45, 0.0, 0.85);

    // Lights run down and up their column of the sensor.
    ivec2 column = ivec2(p.x, 0);
    int height = int(size.y);
    float smear = clipped(column + ivec2(0, height * 2 / 16)) + clipped(column + ivec2(0, height * 5 / 16)) +
                  clipped(column + ivec2(0, height * 7 / 16)) + clipped(column + ivec2(0, height * 9 / 16)) +
                  clipped(column + ivec2(0, height * 12 / 16));
    c += min(smear * 0.22, 0.12) * e * vec3(0.95, 0.90, 1.0);

    vec4 blotch = particleDraw(floor(cell * 0.25), field) - 0.5, noise = particleDraw(cell, field + 5.0) - 0.5;
    float dark = 1.1 - 0.8 * soft;
    c += (blotch.xyz * 0.06 + noise.xxx * 0.07 + noise.yzw * 0.035) * (0.35 + e) * dark;
    c *= 1.0 - 0.07 * e * odd;
    return vec4(clamp(c, 0.0, 1.0) * here.a, here.a);
}
