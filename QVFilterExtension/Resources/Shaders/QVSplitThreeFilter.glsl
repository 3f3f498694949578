// Three strips across the longer side show the shot from far to near.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"

uniform float effectValue;
uniform float drift;  // -1..1

vec4 QVSplitThreeFilter(vec2 uv) {
    vec2 size = inputSize(0);
    bool wide = size.x >= size.y;
    vec2 at = offBorders(uv);
    float across = (wide ? at.x : at.y) * 3.0;
    float strip = min(floor(across), 2.0);
    // The strip's own place about its middle, in frames.
    vec2 inside = uv - 0.5;
    float within = (across - strip - 0.5) / 3.0;
    inside = wide ? vec2(within, inside.y) : vec2(inside.x, within);
    float near = mix(1.0, strip < 0.5 ? 1.08 : strip < 1.5 ? 1.35 : 1.8, min(2.0 * effectValue, 1.0));
    near *= mix(1.0, strip < 1.5 ? 1.0 : 1.15, max(2.0 * effectValue - 1.0, 0.0));
    float slide = drift * (strip == 1.0 ? -0.016 : 0.016) * min(2.0 * effectValue, 1.0);
    vec2 focus = vec2(0.5, wide ? mix(0.5, 0.42, min(5.0 * (near - 1.0), 1.0)) : 0.33);
    vec2 place = focus + inside / near + (wide ? vec2(0.0, slide) : vec2(slide, 0.0)) * (1.0 - 1.0 / near) * 2.0;
    vec4 color = readInput(0, place);
    vec3 tint = strip < 0.5 ? vec3(0.9, 1.0, 1.12) : strip < 1.5 ? vec3(1.0) : vec3(1.1, 1.0, 0.9);
    color.rgb = min(color.rgb * mix(vec3(1.0), tint, effectValue), color.a);
    // Lines between strips.
    float gap = abs(fract(across + 0.5) - 0.5) / 3.0 * (wide ? size.x : size.y);
    bool between = across > 0.5 && across < 2.5;
    float line = between ? clamp(4.0 * unitPixels(size) - gap + 0.5, 0.0, 1.0) : 0.0;
    return mix(color, vec4(1.0), line);
}
