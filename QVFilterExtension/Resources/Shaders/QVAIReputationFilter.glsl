// The picture repeated along a line, each repetition fainter than the one before.
#include "borders.glsl"
#include "frame.glsl"

uniform float angleValue;     // direction of the line, turns anticlockwise from the right
uniform float distanceValue;  // of two repetitions, half shorter sides of the frame

vec4 under(vec4 front, vec4 behind) { return front + behind * (1.0 - front.a); }

vec4 QVAIReputationFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec2 direction = vec2(cos(angleValue * 6.2831853), -sin(angleValue * 6.2831853));
    vec2 step1 = direction * distanceValue * 0.5 * min(size.x, size.y) / size;
    vec4 first = readHere(0), second = readPixel(0, pixelAt(mirrorAtEdges(uv - step1) * size));
    vec4 third = readPixel(0, pixelAt(mirrorAtEdges(uv - 2.0 * step1) * size));
    vec4 fourth = readPixel(0, pixelAt(mirrorAtEdges(uv - 3.0 * step1) * size));
    // Bright parts shine through what lies on them, from repetition to repetition colder; the rest shows as in a multiple
    // exposure.
    vec4 shining = max(max(first, second * vec4(0.88, 0.83, 0.9, 1.0)),
                       max(third * vec4(0.52, 0.66, 0.88, 1.0), fourth * vec4(0.3, 0.46, 0.7, 1.0)));
    vec4 color = under(under(under(first * 0.62, second * 0.6), third * 0.5), fourth * 0.4);
    // What four opaque layers of these opacities cover counts as all; soft edges that lie on each other stay as soft
    // as they are.
    color *= 1.0 / (1.0 - 0.38 * 0.4 * 0.5 * 0.6);
    color *= min(shining.a / max(color.a, 1e-6), 1.0);
    return mix(color, shining, 0.6);
}
