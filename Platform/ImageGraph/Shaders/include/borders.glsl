// Borders that rounding cannot move. Pixel centres often lie exactly on the borders of blocks, pieces and pixels, as
// those of every odd frame do on its middle line, and a device's last bit would then choose the side. So a place is taken
// a little aside before it is asked on which side of a border it lies.

// Pixels. No simple part of one, and other across than down, so that it leads off diagonal borders too.
const vec2 kAside = vec2(0.0163, 0.0211);

// The place `uv` of the pixel being coloured, aside: for blocks, pieces and stripes. What is read there is read at `uv`.
vec2 offBorders(vec2 uv) { return uv + kAside / outputSize(); }

// The pixel that a place (pixels) lies in.
ivec2 pixelAt(vec2 place) { return ivec2(place + kAside); }

// Whole pixels that a length (pixels) has, and the nearest number of them, at least 1.
float wholePixels(float length) { return max(floor(length + 0.01), 1.0); }
float nearestPixels(float length) { return wholePixels(length + 0.5); }
