// The frame split into panels along one side.
#include "borders.glsl"
#include "panels.glsl"

uniform float splitNumber;    // of panels
selector int splitDirection;  // 0 side by side, 1 one above the other

vec4 QVSplitDirectionFilte(vec2 uv) {
    vec2 size = inputSize(0);
    vec4 color = readPixel(0, pixelAt(panelPlace(offBorders(uv), splitNumber, splitDirection) * size));
    vec2 number = splitDirection == 0 ? vec2(splitNumber, 1.0) : vec2(1.0, splitNumber);
    return mix(color, vec4(color.a), panelLine(uv, number, size));
}
