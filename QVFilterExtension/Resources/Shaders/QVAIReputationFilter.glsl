// The picture repeated along a line: a row of cards, each behind the one before, smaller, fainter and colder. A picture that
// is cut out has no cards, and nothing behind it: copies of it alone stand in the row.
#include "frame.glsl"

uniform float angleValue;     // direction of the row, turns anticlockwise from the right
uniform float distanceValue;  // of two cards, half shorter sides of the frame; at 0 the first is the frame

// Card number `index` over `behind`; `row` is the way from card to card, shorter sides. `whole`: 1 for a picture, 0 for one that
// is cut out.
vec4 card(vec4 behind, vec2 uv, vec2 size, vec2 row, float index, vec3 tint, float whole) {
    float shorter = min(size.x, size.y), unit = unitPixels(size);
    float scale = exp2(-0.2 * index * min(distanceValue * 8.0, 1.0)) / (1.0 + 1.4 * distanceValue);
    vec2 away = (uv - 0.5) * size - row * shorter * (index - 0.9);
    vec2 beyond = abs(away) - 0.5 * size * scale;
    float outside = max(beyond.x, beyond.y);
    // Where the cards lie on each other there is no shadow, nor beyond the frame.
    float shadow = 1.0 - clamp(length(max(beyond, 0.0)) / (48.0 * unit), 0.0, 1.0);
    behind.rgb *= 1.0 - 0.5 * whole * shadow * shadow;
    vec4 face = readInput(0, 0.5 + away / (scale * size));
    face.rgb *= tint;
    float line = clamp(1.0 - abs(outside + 1.5 * unit) / max(1.5 * unit, 0.75), 0.0, 1.0);
    face.rgb += 0.5 * whole * line * min(distanceValue * 8.0, 1.0) * (face.a - face.rgb);
    // A card hides what is behind it, a copy only what it covers, but for where all are one.
    float through = (1.0 - face.a) * (1.0 - whole) * min(distanceValue * 8.0, 1.0);
    return mix(behind, face + behind * through, clamp(0.5 - outside, 0.0, 1.0));
}

vec4 QVAIReputationFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec2 row = vec2(cos(angleValue * 6.2831853), -sin(angleValue * 6.2831853)) * distanceValue * 0.5;
    // What is cut out does not fill both upper corners.
    float whole = readPixel(0, ivec2(0)).a * readPixel(0, ivec2(size.x - 1.0, 0.0)).a;
    vec4 color = readInput(0, 0.5 + (uv - 0.5) * 0.6) * whole;
    color.rgb *= vec3(0.16, 0.2, 0.28);
    color = card(color, uv, size, row, 3.0, vec3(0.3, 0.42, 0.62), whole);
    color = card(color, uv, size, row, 2.0, vec3(0.5, 0.6, 0.78), whole);
    color = card(color, uv, size, row, 1.0, vec3(0.74, 0.8, 0.9), whole);
    return card(color, uv, size, row, 0.0, vec3(1.0), whole);
}
