// A sheet of paper that is crumpled on the beat and smoothed again: the picture printed on it breaks at the folds, the
// facets catch the light of a lamp on the upper left, and the print wears off along the folds. Input 1 holds the slopes
// (red, green) and the wear (blue) of the paper.
#include "color.glsl"
#include "frame.glsl"

uniform float effectValue;
uniform float pulse;  // 0..1
uniform float beat;   // number of the beat; each has its own folds

vec4 QVCreasePEMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float crumple = pulse * (0.35 + 0.65 * effectValue);
    vec2 side = size / max(size.x, size.y);
    vec2 origin = fract(beat * vec2(0.618034, 0.381966) + vec2(0.13, 0.57));
    vec3 paper = (readInput(1, mirrorAtEdges(origin + (uv - 0.5) * side * 0.8)).rgb - 0.5) * (2.0 * crumple);

    // The sheet draws together a little; a slope shows the print from beside.
    vec2 place = 0.5 + (uv - 0.5) * (1.0 + 0.05 * crumple) + paper.xy * (0.05 / side);
    vec4 color = readInput(0, mirrorAtEdges(place));
    float light = dot(paper.xy, vec2(0.75, 0.85));
    color.rgb *= 1.0 + light * (light > 0.0 ? 0.8 : 1.0);
    color.rgb += (0.93 * color.a - color.rgb) * clamp(paper.z * 0.7, -0.1, 0.8);
    return vec4(clamp(color.rgb, 0.0, color.a), color.a);
}
