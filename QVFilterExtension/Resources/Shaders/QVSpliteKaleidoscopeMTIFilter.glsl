// Sectors around the middle of the frame, each the reflection of its neighbours.
#include "frame.glsl"
#include "wave.glsl"

uniform float splitNumber;  // of sectors around the circle; below 1.5 the frame stays as it is

vec4 QVSpliteKaleidoscopeMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec2 away = (uv - 0.5) * size;
    float count = floor(splitNumber + 0.5), sector = 1.0 / max(count, 1.0);
    // Turns from the upright; each sector is folded along its own middle.
    float turned = atan(away.x, -away.y) * 0.15915494;
    float folded = abs(turned - sector * floor(turned / sector + 0.5));
    // The wedge that all show comes down from the upper left and crosses the middle of the picture, where its subject
    // is, at the ring that the eye rests on. The waves stand for cosine and sine.
    vec2 axis = normalize(size), side = vec2(-axis.y, axis.x);
    vec2 apex = 0.5 * size - 0.3 * min(size.x, size.y) * axis;
    vec2 place = (apex + (axis * wave(folded) + side * wave(folded - 0.25)) * length(away) * 0.8) / size;
    return readInput(0, mirrorAtEdges(count < 1.5 ? uv : place));
}
