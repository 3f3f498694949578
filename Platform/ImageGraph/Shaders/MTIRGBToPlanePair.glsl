#include "plane.glsl"

// Premultiplied RGB to a plane of chroma pairs.
uniform vec4 row, row2;  // matrix rows, bias last
uniform vec2 reduction;  // pixels that a sample covers, 1 or 2 a side
uniform bool straight;   // an alpha plane goes with it

vec4 MTIRGBToPlanePair(vec2 uv) {
    ivec2 first = pixelHere() * ivec2(reduction);
    ivec2 last = first + ivec2(reduction) - 1;
    vec4 mean = 0.25 * (readPixel(0, first) + readPixel(0, ivec2(last.x, first.y)) + readPixel(0, ivec2(first.x, last.y)) +
                        readPixel(0, last));
    vec4 color = sampleColor(mean, straight);
    return vec4(dot(row, color), dot(row2, color), 0.0, 1.0);
}
