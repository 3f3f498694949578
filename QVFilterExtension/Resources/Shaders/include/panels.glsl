// Split screens.
#include "frame.glsl"

// Panels along one side, each the middle of the frame at its own scale; of those one above the other the part where
// faces are, a little higher. `direction` 0: side by side; 1: one above the other.
vec2 panelPlace(vec2 uv, float number, int direction) {
    vec2 inside = (fract(uv * number) - 0.5) / number;
    return direction == 0 ? vec2(0.5 + inside.x, uv.y) : vec2(uv.x, 0.5 - 0.16 * (1.0 - 1.0 / number) + inside.y);
}

// How much of a pixel a line between panels covers: 6 units of 1/1080 of the shorter side wide, less between many
// panels, and at least a pixel. `number` of panels across and down; none at the frame's edge.
float panelLine(vec2 uv, vec2 number, vec2 frame) {
    vec2 panels = uv * number, between = abs(panels - floor(panels + 0.5)) / number * frame;
    vec2 inner = step(0.5, panels) * step(panels, number - 0.5);
    float most = max(number.x, number.y);
    vec2 half_ = vec2(max(unitPixels(frame) * min(3.0, 12.0 / most), 0.5));
    vec2 line = clamp(half_ - between + 0.5, 0.0, 1.0) * inner;
    return max(line.x, line.y);
}
