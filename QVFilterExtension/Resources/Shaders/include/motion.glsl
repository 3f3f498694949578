// The picture moved within its frame, and smeared by a shutter that is open while it moves. Places are in pixels.

// The picture beyond its edges: mirrored, again and again.
vec2 mirroredPixels(vec2 place, vec2 size) { return size - abs(mod(place, 2.0 * size) - size); }

// Shifts the taps of neighbouring pixels along the way against one another, so that a long smear shows no copies:
// -0.5..0.5 of the distance of two taps.
float tapShift(ivec2 pixel) { return float((pixel.x * 5 + pixel.y * 3) & 7) * 0.125 - 0.4375; }

// The mean of eight values of tap(vec2), the colour at a place, along `way` about `place`. The taps are spread over a
// pixel too, which smooths as interpolation would; a picture that is not moved stays as it is to the bit.
#define MEAN_ALONG(tap, place, way, shift) \
    ((tap((place) + (way) * (((shift) - 3.5) * 0.125) + vec2(-0.44, 0.06)) + \
      tap((place) + (way) * (((shift) - 2.5) * 0.125) + vec2(0.19, -0.31)) + \
      tap((place) + (way) * (((shift) - 1.5) * 0.125) + vec2(-0.19, 0.31)) + \
      tap((place) + (way) * (((shift) - 0.5) * 0.125) + vec2(0.44, -0.06)) + \
      tap((place) + (way) * (((shift) + 0.5) * 0.125) + vec2(-0.31, -0.19)) + \
      tap((place) + (way) * (((shift) + 1.5) * 0.125) + vec2(0.06, 0.44)) + \
      tap((place) + (way) * (((shift) + 2.5) * 0.125) + vec2(-0.06, -0.44)) + \
      tap((place) + (way) * (((shift) + 3.5) * 0.125) + vec2(0.31, 0.19))) * 0.125)

// What a pixel shows, and the way that it moves over while the shutter is open.
struct Sight {
    vec2 place;
    vec2 way;
};

// A pose is x, y: shift right and down, widths and heights of the frame; z: scale; w: angle, radians clockwise. The
// picture is scaled and turned about `pivot` (0..1 of the frame); `motion` is how much the pose changes meanwhile.
Sight sightOf(vec2 uv, vec2 size, vec2 pivot, vec4 pose, vec4 motion) {
    float c = cos(pose.w) / pose.z, s = sin(pose.w) / pose.z;
    vec2 away = (uv - pivot - pose.xy) * size, moved = motion.xy * size;
    vec2 from = vec2(c * away.x + s * away.y, c * away.y - s * away.x);
    vec2 shifted = vec2(c * moved.x + s * moved.y, c * moved.y - s * moved.x);
    vec2 way = motion.w * vec2(from.y, -from.x) - from * (motion.z / pose.z) - shifted;
    return Sight(pivot * size + from, way);
}

// Half of what a pose differs from rest at a strength of 0, half as much again at 1; the angle stays.
vec4 strengthened(vec4 pose, float strength) {
    return vec4(pose.xy * (0.5 + strength), 1.0 + (pose.z - 1.0) * (0.5 + strength), pose.w);
}
