// The picture repeated along a line, each repetition fainter than the one before.
#include "frame.glsl"

uniform float angleValue;     // direction of the line, turns anticlockwise from the right
uniform float distanceValue;  // of two repetitions, half shorter sides of the frame

vec4 under(vec4 front, vec4 behind) { return front + behind * (1.0 - front.a); }

vec4 QVAIReputationFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec2 direction = vec2(cos(angleValue * 6.2831853), -sin(angleValue * 6.2831853));
    vec2 step1 = direction * distanceValue * 0.5 * min(size.x, size.y) / size;
    vec4 color = readHere(0) * 0.55;
    color = under(color, 0.6 * readPixel(0, ivec2(mirrorAtEdges(uv - step1) * size)));
    color = under(color, 0.5 * readPixel(0, ivec2(mirrorAtEdges(uv - 2.0 * step1) * size)));
    color = under(color, 0.4 * readPixel(0, ivec2(mirrorAtEdges(uv - 3.0 * step1) * size)));
    // What four opaque layers of these opacities cover.
    return color / (1.0 - 0.45 * 0.4 * 0.5 * 0.6);
}
