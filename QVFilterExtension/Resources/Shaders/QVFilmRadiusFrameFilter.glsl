// The picture zoomed about its middle within the gate, black around it.
#include "gate.glsl"

uniform float zoomValue;  // how much larger; 0 is the picture's own size

vec4 QVFilmRadiusFrameFilter(vec2 uv) {
    vec2 place = 0.5 + (uv - 0.5) / max(1.0 + zoomValue, 0.01);
    return vec4(readInput(0, mirrorAtEdges(place)).rgb * gateOpening(uv, outputSize()), 1.0);
}
