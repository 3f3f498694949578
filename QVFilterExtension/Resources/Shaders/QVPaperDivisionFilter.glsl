// Paper torn along a line: the left piece ends in a ragged white edge of fibres that casts a shadow on the right one.
// Inputs: left piece, right piece.
#include "borders.glsl"
#include "frame.glsl"
#include "particles.glsl"

uniform vec2 topPoint, botPoint;  // fractions of the frame

// Four random curves along the tear, each -1..1, with one bend in each whole number.
vec4 ragged(float along, float seed) {
    float cell = floor(along), t = along - cell;
    vec4 a = particleDraw(vec2(cell, 0.0), seed), b = particleDraw(vec2(cell + 1.0, 0.0), seed);
    return mix(a, b, t * t * (3.0 - 2.0 * t)) * 2.0 - 1.0;
}

vec4 QVPaperDivisionFilter(vec2 uv) {
    vec2 units = outputSize() / unitPixels(outputSize());
    vec2 way = (botPoint - topPoint) * units, from = (offBorders(uv) - topPoint) * units;
    way = dot(way, way) > 1e-4 ? way * inversesqrt(dot(way, way)) : vec2(0.0, 1.0);
    float along = dot(from, way), across = from.x * way.y - from.y * way.x;

    // x: where the print ends, y: how much paper shows beyond it, z: fibres that stand out, w: their lean.
    vec4 wide = ragged(along * (1.0 / 130.0), 101.0), middle = ragged(along * (1.0 / 37.0), 103.0);
    vec4 small = ragged(along * (1.0 / 11.0), 107.0), hair = ragged((along + across * 0.35) * (1.0 / 2.6), 109.0);
    vec4 shape = wide * vec4(15.0, 6.0, 0.0, 0.0) + middle * vec4(6.0, 6.0, 0.0, 0.0) +
                 small * vec4(2.6, 2.4, 1.6, 0.0) + hair * vec4(0.8, 0.5, 1.4, 0.0);
    float printEnd = shape.x, paperEnd = printEnd + max(13.0 + shape.y, 1.5);

    float print = clamp((printEnd - across) * 0.8 + 0.5, 0.0, 1.0);
    // Fibres stand out of the edge: a hard edge here, a frayed one there.
    float fray = 1.5 + 2.5 * abs(middle.z);
    float paper = clamp((paperEnd + shape.z - across) / fray + 0.5, 0.0, 1.0);

    // The torn face: thinner outwards, with fibres across it and a fold of shade where the print layer ends.
    float depth = clamp((across - printEnd) / max(paperEnd - printEnd, 1.0), 0.0, 1.0);
    vec2 grain = vec2(along * 0.45 + across * 0.1, across * 0.28 - along * 0.05);
    vec4 fibre = particleDraw(grain, 113.0);
    float face = 0.985 - 0.09 * (1.0 - depth) * (1.0 - depth) - 0.05 * fibre.x * fibre.y + 0.02 * hair.w -
                 0.05 * abs(small.w) * (1.0 - depth);
    vec3 paperColor = vec3(1.0, 0.992, 0.97) * face;

    float lifted = max(across - paperEnd + 4.0, 0.0);
    float shade = 0.62 / (1.0 + lifted * lifted * 0.0022) * clamp(1.0 - lifted * (1.0 / 120.0), 0.0, 1.0);
    vec4 left = readHere(0), right = readHere(1);
    right.rgb *= 1.0 - shade * clamp(1.0 - print, 0.0, 1.0);
    // The print is bent up a little just before it ends.
    left.rgb *= 1.0 - 0.22 * clamp(1.0 - (printEnd - across) * (1.0 / 9.0), 0.0, 1.0);
    vec4 piece = mix(vec4(paperColor * left.a, left.a), left, print);
    return mix(right, piece, paper);
}
