// A thermal camera: brightness becomes heat in false colours, and bright isotherms wander from cold to hot.
#include "borders.glsl"
#include "color.glsl"

uniform float iTime;
uniform float effectValue;

// Cold to hot: night blue, violet, red, orange, yellow, white.
vec3 heatColor(float heat) {
    float blue = min(0.16 + heat * 2.2, 1.0) * clamp(1.65 - heat * 3.2, 0.0, 1.0) + max(heat * 5.0 - 4.0, 0.0);
    return clamp(vec3(heat * 2.4 - 0.42, heat * 2.3 - 1.05, blue), 0.0, 1.0);
}

float heatAt(ivec2 pixel) { return luma(readPixel(0, pixel).rgb); }

vec4 QVHotlineMTIFilter(vec2 uv) {
    // The sensor is coarse: heat is the mean of two rings around the pixel, its slope their differences.
    int reach = int(wholePixels(min(outputSize().x, outputSize().y) / 170.0));
    int diagonal = (reach * 3 + 3) / 2;
    ivec2 pixel = pixelHere();
    vec4 here = readHere(0);
    float left = heatAt(pixel - ivec2(reach, 0)), right = heatAt(pixel + ivec2(reach, 0));
    float up = heatAt(pixel - ivec2(0, reach)), down = heatAt(pixel + ivec2(0, reach));
    float a = heatAt(pixel - ivec2(diagonal)), b = heatAt(pixel + ivec2(diagonal, -diagonal));
    float c = heatAt(pixel + ivec2(-diagonal, diagonal)), d = heatAt(pixel + ivec2(diagonal));
    float heat = (left + right + up + down + a + b + c + d) / max(8.0 * here.a, 0.02);
    vec2 slope = vec2(right - left + b + d - a - c, down - up + c + d - a - b) / float(2 * reach + 4 * diagonal);

    // From the isotherm in heat, then in pixels. Where they crowd or the picture is rough they would only be noise.
    const float kIsotherms = 6.0;
    float away = (0.5 - abs(fract(heat * kIsotherms - iTime * 0.35) - 0.5)) / kIsotherms;
    float steep = length(slope) + 0.0002;
    float line = clamp(float(reach) * (0.4 + 0.35 * effectValue) + 0.5 - away / steep, 0.0, 1.0);
    float crowd = steep * float(reach) * kIsotherms;
    float fine = luma(here.rgb) / max(here.a, 0.02) - heat;
    float rough = abs(left + right - up - down) + abs(a + d - b - c) + 2.0 * abs(fine);
    line *= clamp(crowd * 30.0, 0.0, 1.0) * clamp(1.6 - crowd * 4.0, 0.0, 1.0) * clamp(1.5 - rough * 9.0, 0.0, 1.0);

    // Some of the fine detail comes back, as cameras blend it in from a second sensor.
    vec3 hot = heatColor(clamp(heat + 0.35 * fine, 0.0, 1.0));
    hot = mix(hot, vec3(1.0, 0.98, 0.9), line * 0.85);
    return vec4(mix(here.rgb, hot * here.a, min(effectValue * 1.7 + 0.08, 1.0)), here.a);
}
