// The mean of the frame turned about its middle by up to half the angle either way.
#include "borders.glsl"
#include "motion.glsl"

uniform float angle;  // from tap to tap, radians
uniform vec2 turn;    // its cosine and sine

vec2 turned(vec2 v, vec2 by) { return vec2(v.x * by.x - v.y * by.y, v.x * by.y + v.y * by.x); }
#define TAP(v) readPixel(0, pixelAt(size - abs(size - abs(center + (v)))))  // mirrored at the edges

vec4 QVFilmTransitionRotationBlurFilter(vec2 uv) {
    vec2 size = outputSize(), center = size * 0.5;
    vec2 back = vec2(turn.x, -turn.y);
    float first = angle * tapShift(pixelHere());
    vec2 v0 = turned(uv * size - center, vec2(1.0 - 0.5 * first * first, first));
    vec2 a1 = turned(v0, turn), a2 = turned(a1, turn), a3 = turned(a2, turn), a4 = turned(a3, turn);
    vec2 b1 = turned(v0, back), b2 = turned(b1, back), b3 = turned(b2, back), b4 = turned(b3, back);
    return (TAP(v0) + TAP(a1) + TAP(a2) + TAP(a3) + TAP(a4) + TAP(b1) + TAP(b2) + TAP(b3) + TAP(b4)) * (1.0 / 9.0);
}
