// The picture repeated along a line: a row of cards, each behind the one before, smaller, fainter and colder. A picture that
// is cut out has no cards, and nothing behind it: copies of it alone stand in the row.
#include "borders.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float angleValue;     // direction of the row, turns anticlockwise from the right
uniform float distanceValue;  // of two cards, half shorter sides of the frame; at 0 the first is the frame
selector int cutOut;          // 1: the picture is cut out; 0: its corners tell

// What a card shows, `smaller` than the frame. Far ones are half as large or less: two of the pixels that one of theirs covers.
#define NEAR_FACE(away, smaller) readInput(0, 0.5 + (away) * (smaller) * pixel)
#define FAR_FACE(away, smaller) \
    (0.5 * (readPixel(0, pixelAt(0.5 * size + ((away) - 0.25) * (smaller))) + \
            readPixel(0, pixelAt(0.5 * size + ((away) + 0.25) * (smaller)))))

// A card with this face over `behind`. `away`: from its middle, pixels; `larger`: its size over the frame's; `apart`: 1, or
// less where cards lie on each other; `whole`: 1 for a picture, 0 for one that is cut out; `border`: its cover at its sides
// and its lower end, and what it gains a pixel inwards.
vec4 card(vec4 behind, vec4 face, vec2 away, float larger, vec3 tint, float apart, float whole, vec2 border) {
    vec2 size = inputSize(0), beyond = abs(away) - size * (0.5 * larger);
    float unit = unitPixels(size);
    float outside = max(beyond.x, beyond.y);
    // Where the cards lie on each other there is no shadow, nor beyond the frame.
    float shadow = 1.0 - clamp(length(max(beyond, 0.0)) / (48.0 * unit), 0.0, 1.0);
    behind.rgb *= 1.0 - 0.5 * whole * shadow * shadow;
    face.rgb *= tint;
    float line = clamp(1.0 - abs(outside + 1.5 * unit) / max(1.5 * unit, 0.75), 0.0, 1.0);
    face.rgb += 0.5 * whole * line * apart * (face.a - face.rgb);
    // A card hides what is behind it, a copy only what it covers, but for where all are one.
    float through = (1.0 - face.a) * (1.0 - whole) * apart, inside = clamp(0.5 - outside, 0.0, 1.0);
    inside *= clamp(border.x - max(beyond.x, away.y - 0.5 * larger * size.y) * border.y, 0.0, 1.0);
    return face * inside + behind * (1.0 - inside * (1.0 - through));
}

vec4 QVAIReputationFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float apart = min(distanceValue * 8.0, 1.0), grow = 1.0 + 0.15 * apart, first = 1.0 + 1.4 * distanceValue;
    vec2 row = circlePoint(-angleValue) * (distanceValue * 0.5 * min(size.x, size.y));
    // What is cut out does not fill both upper corners.
    float whole =
        cutOut == 1 ? 0.0 : readPixel(0, ivec2(0)).a * readPixel(0, ivec2(size.x - 1.0, 0.0)).a;
    // What is cut out ends softly where the frame it comes from cuts it off, but for the hair.
    float fades = (1.0 - whole) * apart;
    vec2 border = vec2(1.0 - fades, 1.0 / (1.0 + fades * 0.1 * min(size.x, size.y)));
    vec4 color = vec4(0.0);
    if (cutOut == 0) color = readInput(0, 0.5 + (uv - 0.5) * 0.6) * whole;
    color.rgb *= vec3(0.16, 0.2, 0.28);
    vec2 away = (uv - 0.5) * size + 0.9 * row;  // from where a card before the first would be
    float shrink = 1.0 / grow, larger = 1.0 / first, third = first * grow * grow, thirdLarger = larger * shrink * shrink;
    vec2 pixel = 1.0 / size, second = away - row, next = second - row, last = next - row;
    vec4 face = FAR_FACE(last, third * grow);
    color = card(color, face, last, thirdLarger * shrink, vec3(0.3, 0.42, 0.62), apart, whole, border);
    face = FAR_FACE(next, third);
    color = card(color, face, next, thirdLarger, vec3(0.5, 0.6, 0.78), apart, whole, border);
    face = NEAR_FACE(second, first * grow);
    color = card(color, face, second, larger * shrink, vec3(0.74, 0.8, 0.9), apart, whole, border);
    return card(color, NEAR_FACE(away, first), away, larger, vec3(1.0), apart, whole, border);
}
