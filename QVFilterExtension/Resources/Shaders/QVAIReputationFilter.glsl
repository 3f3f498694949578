// The picture repeated along a line: a row of cards, each behind the one before, smaller, fainter and colder. A picture that
// is cut out has no cards, and nothing behind it: copies of it alone stand in the row.
#include "frame.glsl"

uniform float angleValue;     // direction of the row, turns anticlockwise from the right
uniform float distanceValue;  // of two cards, half shorter sides of the frame; at 0 the first is the frame
selector int cutOut;          // 1: the picture is cut out; 0: its corners tell

// A card over `behind`. `away`: from its middle, pixels; `smaller`: the frame's size over its own; `apart`: 1, or less where
// cards lie on each other; `whole`: 1 for a picture, 0 for one that is cut out.
vec4 card(vec4 behind, vec2 away, vec2 size, float smaller, vec3 tint, float apart, float whole) {
    float unit = unitPixels(size);
    vec2 inFrame = away * smaller, beyond = (abs(inFrame) - 0.5 * size) / smaller;
    float outside = max(beyond.x, beyond.y);
    // Where the cards lie on each other there is no shadow, nor beyond the frame.
    float shadow = 1.0 - clamp(length(max(beyond, 0.0)) / (48.0 * unit), 0.0, 1.0);
    behind.rgb *= 1.0 - 0.5 * whole * shadow * shadow;
    vec4 face = readInput(0, 0.5 + inFrame / size);
    face.rgb *= tint;
    float line = clamp(1.0 - abs(outside + 1.5 * unit) / max(1.5 * unit, 0.75), 0.0, 1.0);
    face.rgb += 0.5 * whole * line * apart * (face.a - face.rgb);
    // A card hides what is behind it, a copy only what it covers, but for where all are one.
    float through = (1.0 - face.a) * (1.0 - whole) * apart;
    return mix(behind, face + behind * through, clamp(0.5 - outside, 0.0, 1.0));
}

vec4 QVAIReputationFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float apart = min(distanceValue * 8.0, 1.0), grow = exp2(0.2 * apart), first = 1.0 + 1.4 * distanceValue;
    vec2 row = vec2(cos(angleValue * 6.2831853), -sin(angleValue * 6.2831853)) *
               (distanceValue * 0.5 * min(size.x, size.y));
    // What is cut out does not fill both upper corners.
    float whole =
        cutOut == 1 ? 0.0 : readPixel(0, ivec2(0)).a * readPixel(0, ivec2(size.x - 1.0, 0.0)).a;
    vec4 color = readInput(0, 0.5 + (uv - 0.5) * 0.6) * whole;
    color.rgb *= vec3(0.16, 0.2, 0.28);
    vec2 away = (uv - 0.5) * size + 0.9 * row;  // from where a card before the first would be
    float third = first * grow * grow;
    color = card(color, away - 3.0 * row, size, third * grow, vec3(0.3, 0.42, 0.62), apart, whole);
    color = card(color, away - 2.0 * row, size, third, vec3(0.5, 0.6, 0.78), apart, whole);
    color = card(color, away - row, size, first * grow, vec3(0.74, 0.8, 0.9), apart, whole);
    return card(color, away, size, first, vec3(1.0), apart, whole);
}
