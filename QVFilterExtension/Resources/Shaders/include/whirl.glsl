// One fast motion through both clips, which change where it is fastest: zoom and turn as a complex number, the
// logarithm of the scale and the angle (radians, clockwise). What lies outside a frame is its mirror image.

vec2 complexProduct(vec2 a, vec2 b) { return vec2(a.x * b.x - a.y * b.y, a.x * b.y + a.y * b.x); }

struct Whirl {
    vec2 pivot;  // pixels
    vec2 turn;   // from the frame's places to the picture's
    vec2 rate;   // zoom and turn of a unit of progress
    vec2 frame;  // pixels
};

// The outgoing clip goes through the first half of `whole`; the incoming one through its second half, or, if `back`,
// the first half back again.
Whirl whirlOf(float progress, vec2 whole, bool back, vec2 pivot, vec2 frame) {
    bool incoming = progress >= 0.5;
    vec2 rate = incoming && back ? -whole : whole;
    vec2 toRest = rate * (incoming ? 1.0 - progress : -progress);
    return Whirl(pivot, exp(toRest.x) * vec2(cos(toRest.y), sin(toRest.y)), rate, frame);
}

// Where a place of the frame lies in the picture `later` than the whirl's own progress.
vec2 whirled(Whirl whirl, vec2 place, float later) {
    vec2 z = -later * whirl.rate;
    vec2 grown = vec2(1.0 + z.x + 0.5 * (z.x * z.x - z.y * z.y), z.y + z.x * z.y);  // exp(z) to the second order
    vec2 from = whirl.pivot + complexProduct(complexProduct(whirl.turn, grown), place - whirl.pivot);
    vec2 copies = floor(from * (1.0 / whirl.frame));
    vec2 odd = copies - 2.0 * floor(copies * 0.5);
    from -= copies * whirl.frame;
    return mix(from, whirl.frame - from, odd);
}
