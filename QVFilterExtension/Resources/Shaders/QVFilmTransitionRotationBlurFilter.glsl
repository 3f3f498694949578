// The mean of the frame turned about its middle by up to half the angle either way.
#include "borders.glsl"
#include "motion.glsl"

uniform float angle;  // from tap to tap, radians
uniform vec2 turn1, turn2, turn3, turn4;  // cosine and sine of it and of its multiples

vec2 turned(vec2 v, vec2 by) { return vec2(v.x * by.x - v.y * by.y, v.x * by.y + v.y * by.x); }
vec2 turnedBack(vec2 v, vec2 by) { return turned(v, vec2(by.x, -by.y)); }
#define TAP(v) readPixel(0, pixelAt(size - abs(size - abs(center + (v)))))  // mirrored at the edges

vec4 QVFilmTransitionRotationBlurFilter(vec2 uv) {
    vec2 size = outputSize(), center = size * 0.5;
    float first = angle * tapShift(pixelHere());
    vec2 v0 = turned(vec2(pixelHere()) + 0.5 - center, vec2(1.0 - 0.5 * first * first, first));
    vec4 sum = TAP(v0) + TAP(turned(v0, turn1)) + TAP(turned(v0, turn2)) + TAP(turned(v0, turn3)) + TAP(turned(v0, turn4));
    sum += TAP(turnedBack(v0, turn1)) + TAP(turnedBack(v0, turn2)) + TAP(turnedBack(v0, turn3)) + TAP(turnedBack(v0, turn4));
    return sum * (1.0 / 9.0);
}
