// A dissolve in which bright parts lead.
#include "color.glsl"

uniform float progress;     // linear
uniform float alphaChange;  // 0 to 1 in the middle and back

vec4 QVTurbulenceBlendMTIFilter(vec2 uv) {
    vec4 outgoing = readHere(0), incoming = readHere(1);
    float share = progress < 0.5 ? 0.5 * alphaChange : 1.0 - 0.5 * alphaChange;
    // The lead is none at the ends and never leaves 0..1.
    share += (luma(incoming.rgb) - luma(outgoing.rgb)) * share * (1.0 - share);
    return mix(outgoing, incoming, share);
}
