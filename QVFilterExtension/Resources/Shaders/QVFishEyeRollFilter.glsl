// A fisheye lens, strongest in the middle of the transition.
#include "borders.glsl"
#include "frame.glsl"
#include "liquid.glsl"

uniform float progress;  // eased

vec4 sourceAt(vec2 place) { return readInput(0, mirrorAtEdges(place)); }
// For the fringes of colour, the smear of which follows.
vec4 nearestAt(vec2 place) { return readPixel(0, pixelAt(mirrorAtEdges(place) * inputSize(0))); }

vec4 QVFishEyeRollFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = uv - 0.5;
    vec2 reach = away * size * (2.0 * inversesqrt(dot(size, size)));
    float far = dot(reach, reach);
    float swell = swellOf(progress);
    float scale = 1.0 + swell * (0.9 * far * far - 0.4);
    float fringe = 0.05 * swell * far;
    vec2 place = 0.5 + away * scale;
    vec4 color = sourceAt(place);
    vec4 parted = partedColors(nearestAt(place - away * fringe), color, nearestAt(place + away * fringe));
    return mix(color, parted, step(1e-4, swell));
}
