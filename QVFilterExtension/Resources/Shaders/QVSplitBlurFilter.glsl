// The frame as a card before its own blurred enlargement.
// Inputs: frame, the frame blurred.
#include "frame.glsl"

uniform float scale;  // of the card
uniform float lift;   // how high it floats, shorter sides

vec4 QVSplitBlurFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float shorter = min(size.x, size.y), unit = unitPixels(size);
    vec2 place = 0.5 + (uv - 0.5 + vec2(0.0, lift) * shorter / size) / scale;
    // Distances from the card's round border and from its shadow's, pixels.
    float corner = 0.05 * shorter * scale;
    vec2 half_ = 0.5 * size * scale - corner, away = (uv - 0.5) * size + vec2(0.0, lift * shorter);
    float beyond = length(max(abs(away) - half_, 0.0)) - corner;
    float below = length(max(abs(away - vec2(0.0, 18.0 * unit)) - half_, 0.0)) - corner;
    vec4 ground = readInput(1, 0.5 + (uv - 0.5) * 0.8);
    float shadow = 1.0 - clamp((below + 12.0 * unit) / (70.0 * unit), 0.0, 1.0);
    ground.rgb *= 0.75 - 0.45 * shadow * shadow;
    vec4 card = readInput(0, place);
    float edge = clamp(1.0 - abs(beyond + 1.5 * unit) / max(1.5 * unit, 0.75), 0.0, 1.0);
    card.rgb += 0.55 * edge * (card.a - card.rgb);
    return mix(ground, card, clamp(0.5 - beyond, 0.0, 1.0));
}
