// The mean of the frame turned about its middle by up to half the angle either way.
#include "borders.glsl"
#include "motion.glsl"

uniform float blurValue;  // the whole angle, radians

vec2 turned(vec2 v, vec2 turn) { return vec2(v.x * turn.x - v.y * turn.y, v.x * turn.y + v.y * turn.x); }
#define TAP(v) readPixel(0, pixelAt(size - abs(size - abs(center + (v)))))  // mirrored at the edges

vec4 QVFilmTransitionRotationBlurFilter(vec2 uv) {
    vec2 size = outputSize(), center = size * 0.5;
    float angle = blurValue * (1.0 / 9.0);
    vec2 turn = vec2(cos(angle), sin(angle)), back = vec2(turn.x, -turn.y);
    float first = angle * tapShift(pixelHere());
    vec2 v0 = turned(uv * size - center, vec2(1.0 - 0.5 * first * first, first));
    vec2 a1 = turned(v0, turn), a2 = turned(a1, turn), a3 = turned(a2, turn), a4 = turned(a3, turn);
    vec2 b1 = turned(v0, back), b2 = turned(b1, back), b3 = turned(b2, back), b4 = turned(b3, back);
    return (TAP(v0) + TAP(a1) + TAP(a2) + TAP(a3) + TAP(a4) + TAP(b1) + TAP(b2) + TAP(b3) + TAP(b4)) * (1.0 / 9.0);
}
