// Waves that cost a fraction of a sine and follow cos(2 pi turns) to within 0.02: period 1, 1 at 0, -1 at a half.

float wave(float turns) {
    float x = abs(fract(turns) * 2.0 - 1.0);
    return x * x * (6.0 - 4.0 * x) - 1.0;
}
vec2 wave(vec2 turns) {
    vec2 x = abs(fract(turns) * 2.0 - 1.0);
    return x * x * (6.0 - 4.0 * x) - 1.0;
}
vec4 wave(vec4 turns) {
    vec4 x = abs(fract(turns) * 2.0 - 1.0);
    return x * x * (6.0 - 4.0 * x) - 1.0;
}

// Cosine and sine of turns, to within 0.0011: for angles that are the same for every pixel.
vec2 circlePoint(float turns) {
    vec2 x = fract(vec2(turns + 0.75, turns + 0.5)) * 2.0 - 1.0, arch = 4.0 * x * (1.0 - abs(x));
    return arch * (0.775 + 0.225 * abs(arch));
}
