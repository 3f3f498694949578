// A tape in picture search: climbing bars of noise that bend the picture, late and smeared colour, ringing edges.
#include "borders.glsl"
#include "color.glsl"
#include "film.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

vec3 differences(vec4 pixel) { return pixel.rgb - luma(pixel.rgb); }

vec4 QVRetroVHSMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float unit = unitPixels(size);
    float row = floor(uv.y * size.y / max(2.0 * unit, 1.0));  // a line of the tape
    float field = timeSlot(iTime, 30.0);
    vec4 rowDraw = particleDraw(vec2(row, 3.0), field);

    // Bars, climbing at an uneven pace; their edges fray from line to line.
    float count = 2.0 + floor(effectValue * 2.0);
    float climb = iTime * 0.385 + 0.03 * wave(iTime * 0.37);
    float at = fract((uv.y + 0.02 * (rowDraw.x - 0.5)) * count + climb * count);
    float height = (0.022 + 0.026 * effectValue) * count;
    float within = 1.0 - smoothstep(0.25 * height, height, abs(at - 0.5));
    float near = max(1.0 - abs(at - 0.5) * 2.6, 0.0);
    near *= near;
    float skew = near * near * (26.0 + 40.0 * effectValue) * (at < 0.5 ? 1.0 : -0.55);
    float jitter = (rowDraw.y - 0.5) * (1.0 + 3.0 * effectValue + 18.0 * within);
    // Where the heads change, the foot is torn.
    float foot = max(1.0 - (1.0 - uv.y) * size.y / (18.0 * unit), 0.0);
    float shift = (skew + jitter + foot * foot * (120.0 + 60.0 * rowDraw.z)) * unit;

    vec2 place = uv * size + vec2(shift, 0.0);
    float late = (4.0 + 8.0 * effectValue) * unit;
    ivec2 p = pixelAt(place);
    vec4 here = readPixel(0, p);
    ivec2 beside = ivec2(int(2.0 * unit + 1.0), 0);
    vec4 left = readPixel(0, p - beside), right = readPixel(0, p + beside);
    vec3 lateA = differences(readPixel(0, p - ivec2(int(late), 0)));
    vec3 lateB = differences(readPixel(0, p - ivec2(int(late * 2.0), 0)));
    vec3 lateC = differences(readPixel(0, p - ivec2(int(late * 3.0), 0)));

    float grey = luma(here.rgb), around = 0.5 * (luma(left.rgb) + luma(right.rgb));
    grey = mix(grey, around, 0.55) + (grey - around) * 0.7;
    vec3 chroma = (differences(here) + lateA * 2.0 + lateB * 2.0 + lateC) * (1.0 / 6.0);
    chroma *= 1.12 - 0.40 * effectValue;
    chroma *= 1.0 + 0.5 * (rowDraw.w - 0.5) * effectValue;
    vec3 c = 0.055 + grey * (1.05 - 0.14 * grey) + chroma;
    c += vec3(0.030, -0.006, 0.030) * (1.0 - grey);

    vec4 snow = particleDraw(vec2(floor(place.x / max(3.0 * unit, 1.0)), row), field + 9.0);
    c += (snow.x - 0.5) * (0.03 + 0.06 * effectValue);
    // In the bars the signal is gone but for dashes, each bright at its left end.
    float dashes = place.x / (46.0 * unit) + rowDraw.z * 37.0;
    vec4 dashDraw = particleDraw(vec2(floor(dashes), row), field + 21.0);
    float tail = max(1.0 - fract(dashes) * (1.0 + 5.0 * dashDraw.y), 0.0);
    float dash = tail * step(dashDraw.x, 0.25 + 0.45 * within);
    vec3 bar = mix(vec3(grey * 0.6 + 0.09) + chroma * 0.3, vec3(0.93, 0.95, 0.98), dash * (0.5 + 0.5 * dashDraw.z));
    c = mix(c, bar, min(within * (0.9 + 0.4 * effectValue) * (0.35 + 1.1 * rowDraw.w), 1.0));
    c = mix(c, vec3(0.12 + 0.7 * snow.w * step(0.6, snow.w)), min(foot * 1.4, 0.85));
    return vec4(clamp(c, 0.0, 1.0) * here.a, here.a);
}
