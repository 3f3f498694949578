// The picture in the gate, black around it and where it is transparent.
#include "gate.glsl"

vec4 QVFilmTransitionRadiusBlackFrameFilter(vec2 uv) {
    return vec4(readHere(0).rgb * gateOpening(uv, outputSize()), 1.0);
}
