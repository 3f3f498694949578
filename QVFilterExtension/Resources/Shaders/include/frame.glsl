// Lengths that look the same at every resolution, and places at and beyond the frame's edges.

// Pixels that one unit takes of a frame whose shorter side is 1080 units.
float unitPixels(vec2 frame) { return min(frame.x, frame.y) * (1.0 / 1080.0); }

// The frame mirrored at its edges, for places at most one frame outside.
vec2 mirrorAtEdges(vec2 uv) { return 1.0 - abs(1.0 - abs(uv)); }
