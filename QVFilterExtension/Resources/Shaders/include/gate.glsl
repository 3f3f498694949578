// The opening of a projector's gate.
#include "frame.glsl"

// 1 within the opening, 0 on the metal: a frame with rounded corners, its edge as soft as an edge that is out of
// focus. `frame` in pixels.
float gateOpening(vec2 uv, vec2 frame) {
    float unit = unitPixels(frame);
    const float kInset = 34.0, kRadius = 64.0, kSoftness = 5.0;  // 1/1080 of the shorter side
    vec2 fromCenter = abs(uv - 0.5) * frame / unit;
    vec2 corner = max(fromCenter - (0.5 * frame / unit - kInset - kRadius), 0.0);
    return smoothstep(kSoftness, -kSoftness, length(corner) - kRadius);
}
