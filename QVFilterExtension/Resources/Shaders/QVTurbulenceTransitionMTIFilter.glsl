// Currents that carry the picture along, three octaves of them, each stirred by the one before.
#include "borders.glsl"
#include "frame.glsl"
#include "liquid.glsl"

uniform float progress;       // eased
uniform float iTime;          // 0..10 over the transition
uniform float randomMaxWarp;  // 0..214.7; other currents for every number, up to a third stronger or weaker

vec4 sourceAt(vec2 place) { return readInput(0, mirrorAtEdges(place)); }
// For the fringes of colour.
vec4 nearestAt(vec2 place) { return readPixel(0, pixelAt(mirrorAtEdges(place) * outputSize())); }

vec4 QVTurbulenceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 place = uv * perShortSide;
    float seed = floor(randomMaxWarp * 8.0);
    vec4 wide = currents(place * 1.5 + vec2(0.10, -0.06) * iTime, seed);
    vec4 middle = currents(place * 3.1 + wide.zw * 1.7 - vec2(0.05, 0.13) * iTime, seed + 1.0);
    vec4 fine = currents(place * 6.3 + middle.zw * 1.6 + wide.xy * 2.0, seed + 2.0);
    float swell = smoothstep(0.0, 1.0, swellOf(progress));
    float strength = swell * (0.45 + 0.3 * fract(randomMaxWarp));
    vec2 carried = (wide.xy + 0.55 * middle.xy + 0.22 * fine.xy) * strength / perShortSide;
    vec2 at = uv + carried, way = carried * 0.12;
    return spectrumOf(nearestAt(at - way), sourceAt(at), nearestAt(at + way));
}
