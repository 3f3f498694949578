// Easing of a time 0..1 to 0..1.

float easeInQuad(float t) { return t * t; }
float easeOutQuad(float t) { return t * (2.0 - t); }
float easeInCubic(float t) { return t * t * t; }
float easeOutCubic(float t) { return 1.0 - easeInCubic(1.0 - t); }
float easeInOutQuad(float t) { return t < 0.5 ? 2.0 * t * t : 1.0 - 2.0 * (1.0 - t) * (1.0 - t); }
float easeInOutCubic(float t) { return t < 0.5 ? 4.0 * easeInCubic(t) : 1.0 - 4.0 * easeInCubic(1.0 - t); }

// Flat to the second derivative at both ends.
float smootherstep(float t) { return t * t * t * (t * (t * 6.0 - 15.0) + 10.0); }

// Where x lies between two edges, 0..1.
float linearstep(float edge0, float edge1, float x) { return clamp((x - edge0) / (edge1 - edge0), 0.0, 1.0); }
