// The picture embossed in a material.
// Inputs: frame, material.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float effectValue;
uniform float turn;  // of the lamp

float tone(vec2 place) { return luma(readPixel(0, pixelAt(place)).rgb); }

vec4 QVSelfAdaptingMaterialMTIFilter(vec2 uv) {
    vec2 size = inputSize(0), material = inputSize(1);
    float unit = unitPixels(size), reach = max(4.0 * unit, 1.0);
    vec2 here = uv * size;
    vec4 color = readHere(0);
    float left = tone(here - vec2(reach, 0.0)), right = tone(here + vec2(reach, 0.0));
    float above = tone(here - vec2(0.0, reach)), below = tone(here + vec2(0.0, reach));
    vec2 slope = vec2(right - left, below - above);
    float light = mix(luma(color.rgb), 0.25 * (left + right + above + below), 0.4);

    // The material covers the frame.
    vec2 lamp = wave(vec2(turn, turn - 0.25));
    vec2 shift = slope * 0.1 + (light - 0.5) * 0.03 + lamp * 0.006;
    float grow = min(material.x / size.x, material.y / size.y);
    vec2 place = 0.5 + ((uv - 0.5) * size * 0.96 + shift * min(size.x, size.y)) * grow / material;
    vec3 stuff = readInput(1, mirrorAtEdges(place)).rgb;

    float curve = light * light * (3.0 - 2.0 * light);
    float shade = 0.16 + 1.1 * mix(light, curve, 0.5);
    float lit = dot(slope, lamp * vec2(1.0, -1.0));
    vec3 molded = stuff * shade;
    molded += max(lit, 0.0) * (0.5 + stuff) * 0.9 + min(lit, 0.0) * 0.55 * stuff;
    float glint = max(lit + light * 0.35 - 0.12, 0.0);
    molded += min(glint * glint * 2.2, 0.5) * (0.4 + 0.6 * stuff);
    // Warm tones, such as those of skin, keep some of their own.
    float warm = clamp(4.0 * (color.r - max(color.g, color.b)) - 0.1, 0.0, 1.0);
    float weight = effectValue * (1.5 - 0.5 * effectValue) * (1.0 - 0.6 * warm * (1.0 - effectValue * effectValue));
    color.rgb = mix(color.rgb, clamp(molded, 0.0, 1.0) * color.a, weight);
    return color;
}
