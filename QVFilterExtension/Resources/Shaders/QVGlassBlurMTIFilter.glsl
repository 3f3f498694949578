// The picture behind reeded glass: every rib is a lens that spreads what is behind it, a little frosted, with the
// light of a window along its edges.
#include "borders.glsl"
#include "frame.glsl"
#include "noise.glsl"

uniform float filterMixDistance;  // how far the glass scatters light, 1/1080 of the frame's shorter side

const float kRib = 54.0;  // width of a rib, 1/1080 of the shorter side

vec4 QVGlassBlurMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float unit = unitPixels(size), reach = filterMixDistance * unit;
    vec2 place = uv * size;
    // Across a rib, -1..1.
    float across = fract((offBorders(uv).x - 0.5) * size.x / (kRib * unit)) * 2.0 - 1.0;
    float bend = across * (0.55 + 0.45 * across * across);
    place.x += bend * reach * 1.15;
    vec2 grain = random2Of(floor(offBorders(uv) * size / max(unit * 2.0, 1.0))) - 0.5;
    vec2 frost = reach * vec2(0.16, 0.22);
    place += grain * frost;
    vec4 sum = readPixel(0, pixelAt(place + frost * vec2(0.5, 0.9))) + readPixel(0, pixelAt(place - frost * vec2(0.5, 0.9)));
    sum += readPixel(0, pixelAt(place + frost * vec2(-0.9, 0.4))) + readPixel(0, pixelAt(place - frost * vec2(-0.9, 0.4)));
    vec4 color = 0.25 * sum;
    // A bright line left of each rib's edge, a dark one right of it, and a breath of green.
    float shown = min(filterMixDistance * (1.0 / 24.0), 1.0);
    float left = max(-across - 0.62, 0.0) * 2.6, right = max(across - 0.55, 0.0) * 2.2;
    float gleam = max(1.0 - abs(across + 0.5) * 4.5, 0.0);
    color.rgb *= 1.0 - shown * (0.55 * right * right + 0.12 * left);
    color.rgb *= mix(vec3(1.0), vec3(0.96, 1.0, 0.99), shown);
    color.rgb += shown * (0.2 * gleam * gleam + 0.18 * left * left) * (color.a - color.rgb);
    return color;
}
