// Places in a picture: (0,0) top left, (1,1) bottom right.

// The picture repeated without end, every other copy mirrored.
vec2 mirrorRepeat(vec2 uv) { return 1.0 - abs(mod(uv, 2.0) - 1.0); }

// Turns the place by an angle (radians, clockwise as seen) about a point, without shearing a picture that is
// `aspect` times as wide as high.
vec2 rotateAbout(vec2 uv, vec2 center, float angle, float aspect) {
    vec2 turn = vec2(cos(angle), sin(angle));
    vec2 d = (uv - center) * vec2(aspect, 1.0);
    return center + vec2(d.x * turn.x - d.y * turn.y, d.x * turn.y + d.y * turn.x) / vec2(aspect, 1.0);
}
