// Two pale ghosts of the picture rise from it in turn.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float effectValue;
uniform float ghostOpacity;   // at the height of a ghost's life
uniform float ghostDistance;  // how far it rises, shorter sides
uniform float life;           // of the first ghost, 0..1

vec4 echo(vec2 place, vec2 size) { return readPixel(0, pixelAt(mirrorAtEdges(place) * size)); }

// A ghost over `below`.
vec4 withGhost(vec4 below, vec2 uv, float age) {
    vec2 size = inputSize(0), perShortSide = size / min(size.x, size.y);
    vec2 pivot = vec2(0.0, 0.25);
    vec2 p = (uv - 0.5) * perShortSide;
    float waver = wave(p.y * 1.6 + age * 1.5) + 0.5 * wave(p.y * 3.7 - age * 2.0);
    p += vec2(0.035 * age * waver, ghostDistance * age);
    p = (pivot + (p - pivot) / (1.0 + 0.3 * age)) / perShortSide + 0.5;
    vec2 behind = vec2(0.01 * waver, 0.035) * age / perShortSide;
    vec4 sum = echo(p, size) * 0.5 + echo(p - behind, size) * 0.3 + echo(p - 2.0 * behind, size) * 0.2;
    vec3 pale = mix(sum.rgb, vec3(luma(sum.rgb)), 0.6) * vec3(0.95, 1.12, 1.22);
    vec4 ghost = vec4(min(pale, sum.a), sum.a);
    return mix(below, ghost, ghostOpacity * 3.2 * age * (1.0 - age));
}

vec4 QVGhostMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float grey = luma(color.rgb);
    vec3 night = mix(color.rgb, vec3(0.92, 1.0, 1.1) * grey, 0.6 * effectValue);
    color.rgb = min(night * (1.0 - 0.5 * effectValue), color.a);
    // The younger ghost is nearer.
    float other = fract(life + 0.5);
    return withGhost(withGhost(color, uv, max(life, other)), uv, min(life, other));
}
