// Easing of a time 0..1 to 0..1.

float easeInCubic(float t) { return t * t * t; }
float easeInOutCubic(float t) { return t < 0.5 ? 4.0 * easeInCubic(t) : 1.0 - 4.0 * easeInCubic(1.0 - t); }

// Flat to the second derivative at both ends.
float smootherstep(float t) { return t * t * t * (t * (t * 6.0 - 15.0) + 10.0); }
