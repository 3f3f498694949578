// A tone curve over the luma of input 0, its hue kept. Input 1 is the curve: 256 entries of 16 bits, the higher byte in
// red and the lower in green, both of which may be interpolated.
#include "color.glsl"
#include "gamut.glsl"

float curveAt(float level) {
    vec2 bytes = readInput(1, vec2((level * 255.0 + 0.5) / 256.0, 0.5)).rg;
    return (bytes.r * 65280.0 + bytes.g * 255.0) / 65535.0;
}

vec4 QVAdjustGroupMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec3 color = clamp(straight(pixel), 0.0, 1.0);
    float before = luma(color);
    float after = curveAt(before);
    float colorfulness = min(after / max(before, 1e-4), 2.0);
    return premultiplied(fitGamut(after + (color - before) * colorfulness, after, 1.0), pixel.a);
}
