// Currents that carry the picture along, fine ones stirred by wide ones.
#include "borders.glsl"
#include "frame.glsl"
#include "liquid.glsl"

uniform float progress;       // eased
uniform float iTime;          // 0..10 over the transition
uniform float randomMaxWarp;  // 0..214.7; other currents for every number, up to a third stronger or weaker

vec4 QVTurbulenceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 place = uv * perShortSide;
    float seed = floor(randomMaxWarp * 8.0);
    vec4 wide = currents(place * 1.5 + vec2(0.10, -0.06) * iTime, seed);
    vec4 fine = currents(place * 3.7 + wide.zw * 2.6 - vec2(0.05, 0.13) * iTime, seed + 1.0);
    float swell = swellOf(progress);
    float strength = swell * swell * (0.5 + 0.3 * fract(randomMaxWarp));
    vec2 carried = (wide.xy + 0.6 * fine.xy) * strength / perShortSide;
    vec4 color = readInput(0, mirrorAtEdges(uv + carried));
    // Red is carried a little less far; the nearest pixels do for its fringes.
    vec4 behind = readPixel(0, pixelAt(mirrorAtEdges(uv + carried * 0.87) * size));
    return partedColors(0.5 * (color + behind), color, color);
}
