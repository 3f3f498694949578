// A dissolve along the front of a swirling liquid: currents decide where the incoming clip comes through first, bright
// parts lead a little, and what is just being exchanged is carried along.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"
#include "liquid.glsl"

uniform float progress;     // linear
uniform float alphaChange;  // 0 to 1 in the middle and back

vec4 QVTurbulenceBlendMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 place = uv * perShortSide;
    vec4 wide = currents(place * 1.6 + vec2(0.5, -0.35) * progress, 31.0);
    float fine = currents(place * 3.3 + wide.xy * 1.8 - vec2(0.3, 0.7) * progress, 32.0).x;

    float share = progress < 0.5 ? 0.5 * alphaChange : 1.0 - 0.5 * alphaChange;
    float apart = 4.0 * share * (1.0 - share);  // 0 at the ends
    vec2 carried = wide.yz * (0.2 * apart) / perShortSide;
    vec4 outgoing = readPixel(0, pixelAt(mirroredPlace((uv + carried * share) * size, size)));
    vec4 incoming = readInput(1, mirrorAtEdges(uv - carried * (1.0 - share)));

    // When a place changes, about 0..1, and how far that has come.
    float late = 0.5 + wide.x + 0.6 * fine - 0.12 * (luma(incoming.rgb) - luma(outgoing.rgb));
    const float kSoftness = 0.35;
    float front = clamp((share * (1.0 + kSoftness) - late) / kSoftness, 0.0, 1.0);
    front = mix(share, front * front * (3.0 - 2.0 * front), min(8.0 * share * (1.0 - share), 1.0));
    return mix(outgoing, incoming, front);
}
