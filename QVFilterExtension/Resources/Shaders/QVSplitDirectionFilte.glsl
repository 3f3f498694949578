// The frame split into panels along one side, each the middle of the frame.
#include "borders.glsl"
#include "frame.glsl"

uniform float splitNumber;    // of panels
selector int splitDirection;  // 0 side by side, 1 one above the other

vec4 QVSplitDirectionFilte(vec2 uv) {
    return readPixel(0, pixelAt(panelPlace(offBorders(uv), splitNumber, splitDirection) * inputSize(0)));
}
