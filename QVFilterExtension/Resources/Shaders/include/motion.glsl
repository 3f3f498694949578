// The picture moved within its frame, and smeared by a shutter that is open while it moves.

// Cosine and sine of an angle in turns, to within 0.0011, exact at quarters of a turn.
vec2 turnOf(float turns) {
    vec2 x = fract(vec2(turns + 0.75, turns + 0.5)) * 2.0 - 1.0;
    vec2 arch = 4.0 * x * (1.0 - abs(x));
    return arch * (0.775 + 0.225 * abs(arch));
}

// What a pixel shows, and the way that it moves over while the shutter is open, in pixels.
struct Sight {
    vec2 place;
    vec2 way;
};

// A pose is x, y: shift right and down, widths and heights of the frame; z: scale; w: angle, turns clockwise. The
// picture is scaled and turned about `pivot` (0..1 of the frame); `motion` is how much the pose changes meanwhile.
Sight sightOf(vec2 uv, vec2 size, vec2 pivot, vec4 pose, vec4 motion) {
    float grow = 1.0 / pose.z;
    vec2 turn = turnOf(pose.w) * grow;
    vec2 away = (uv - pivot - pose.xy) * size, moved = motion.xy * size;
    vec2 from = vec2(turn.x * away.x + turn.y * away.y, turn.x * away.y - turn.y * away.x);
    vec2 shifted = vec2(turn.x * moved.x + turn.y * moved.y, turn.x * moved.y - turn.y * moved.x);
    vec2 way = (6.2831853 * motion.w) * vec2(from.y, -from.x) - from * (motion.z * grow) - shifted;
    return Sight(pivot * size + from, way);
}

// The same sight with its place within the frame: beyond its edges the picture is mirrored, again and again.
Sight mirroredSight(Sight sight, vec2 size) {
    vec2 copies = floor(sight.place / size);
    vec2 odd = copies - 2.0 * floor(copies * 0.5);
    vec2 inside = sight.place - copies * size;
    return Sight(mix(inside, size - inside, odd), sight.way * (1.0 - 2.0 * odd));
}

// Shifts the taps of a pixel along the way at random, so that a long smear shows grain instead of copies: -0.5..0.5 of
// the distance of two taps.
float tapShift(ivec2 pixel) {
    uint bits = uint(pixel.x) * 0x9e3779b1u + uint(pixel.y) * 0x85ebca77u;
    return float(((bits ^ bits >> 15u) * 0x2c1b3c6du) >> 8u) * (1.0 / 16777216.0) - 0.5;
}

// The mean of five values of tap(vec2), the colour at a place in pixels, along `way` about `place`. The taps are spread
// over a pixel too, which smooths as interpolation would; a picture that is not moved stays as it is.
#define MEAN_ALONG(tap, place, way, shift) \
    meanOfFive(tap, (place) + (way) * ((shift) * 0.2), (way) * 0.2)
#define meanOfFive(tap, start, step) \
    ((tap((start) - (step) * 2.0 + vec2(-0.36, 0.18)) + tap((start) - (step) + vec2(0.18, 0.36)) + tap(start) + \
      tap((start) + (step) + vec2(-0.18, -0.36)) + tap((start) + (step) * 2.0 + vec2(0.36, -0.18))) * 0.2)

// Half of what a pose differs from rest at a strength of 0, half as much again at 1; whole turns stay whole.
vec4 strengthened(vec4 pose, float strength) {
    return vec4(pose.xy * (0.5 + strength), 1.0 + (pose.z - 1.0) * (0.5 + strength), pose.w);
}
