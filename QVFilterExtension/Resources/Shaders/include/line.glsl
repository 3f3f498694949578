// Masks of lines: red is 1 in the middle of a line and 0 at its rim, alpha the coverage.

// How light falls off across a line, 1..0.
float lineGlow(vec4 line) { return line.r * line.r * (2.0 - line.r); }
