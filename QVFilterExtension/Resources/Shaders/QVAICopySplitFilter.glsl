// Small copies of the frame around a large one in its middle.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"

uniform float splitNumber;  // of copies along each side, those that the edge cuts counted in part

const float kCard = 0.54;  // of the frame: the large one

vec4 QVAICopySplitFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec2 at = fract((offBorders(uv) - 0.5) * splitNumber + 0.5) * size, tap = vec2(0.25 * splitNumber);
    // Four pixels stand for those that a pixel of a small copy covers.
    vec4 sum = readPixel(0, pixelAt(at - tap)) + readPixel(0, pixelAt(at + tap));
    sum += readPixel(0, pixelAt(at + vec2(tap.x, -tap.y))) + readPixel(0, pixelAt(at + vec2(-tap.x, tap.y)));
    sum *= 0.25;
    // The copies step back: darker and half colourless.
    sum.rgb = 0.62 * mix(sum.rgb, vec3(luma(sum.rgb)), 0.5);
    vec4 card = readInput(0, 0.5 + (uv - 0.5) / kCard);
    float unit = unitPixels(size);
    vec2 beyond = (abs(uv - 0.5) - 0.5 * kCard) * size;
    float outside = max(beyond.x, beyond.y), line = max(4.0 * unit, 1.0);
    float shadow = 1.0 - clamp(outside / (44.0 * unit), 0.0, 1.0);
    sum.rgb *= 1.0 - 0.6 * shadow * shadow;
    sum = mix(sum, vec4(sum.a), clamp(line - outside + 0.5, 0.0, 1.0));
    return mix(sum, card, clamp(0.5 - outside, 0.0, 1.0));
}
