// A large lens before the frame: it magnifies about one point, the less the farther away, and parts the colours
// towards its rim.
uniform float magnificationNum;  // of the glass, times
uniform vec2 centerPoint;        // from the frame's middle, in half frames, x right, y up

vec4 QVCenterMagnifyMTIFilter(vec2 uv) {
    vec2 center = 0.5 + vec2(0.5, -0.5) * centerPoint;
    vec2 size = outputSize(), away = uv - center;
    // The lens reaches the farthest corner, so that nothing is squeezed on the way there.
    float reach = length((0.5 + abs(center - 0.5)) * size);
    float t = min(length(away * size) / reach, 1.0);
    // A glass of so many times, held where it shows a third of that.
    float shrink = 3.0 / (2.0 + magnificationNum);
    float here = mix(shrink, 1.0, t * t * (3.0 - 2.0 * t));
    float fringe = 0.022 * (1.0 - shrink) * t * (1.0 - 0.5 * t);
    vec4 green = readInput(0, center + away * here);
    vec4 red = readInput(0, center + away * (here - fringe)), blue = readInput(0, center + away * (here + fringe));
    vec4 color = vec4(red.r, green.g, blue.b, max(green.a, max(red.a, blue.a)));
    // The glass is thinner towards the rim and mirrors a window there.
    color.rgb *= 1.0 - 0.5 * (1.0 - shrink) * t * t * t;
    return color;
}
