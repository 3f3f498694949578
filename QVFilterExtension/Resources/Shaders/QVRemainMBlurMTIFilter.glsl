// A sideways smear.
uniform float filterMixDistance;  // its length, 1/720 of the frame's shorter side

vec4 QVRemainMBlurMTIFilter(vec2 uv) {
    vec2 size = inputSize(0), place = uv * size;
    float spacing = filterMixDistance * min(size.x, size.y) / (720.0 * 12.0);
    // The taps of neighbouring pixels lie between each other, so that no comb of copies shows.
    float first = (fract(dot(place, vec2(0.7548777, 0.5698403))) - 6.0) * spacing;
#define TAP(i) readPixel(0, ivec2(floor(place.x + first + float(i) * spacing), place.y))
    vec4 sum = TAP(0) + TAP(1) + TAP(2) + TAP(3) + TAP(4) + TAP(5);
    sum += TAP(6) + TAP(7) + TAP(8) + TAP(9) + TAP(10) + TAP(11);
    return sum * (1.0 / 12.0);
}
