// Masks of lines: red is 1 in the middle of a line and 0 at its rim, times the coverage in alpha.

// How light falls off across a line, 1..0.
float lineGlow(vec4 line) {
    float nearness = line.r / max(line.a, 1e-4);
    return nearness * nearness;
}
