#include "plane.glsl"

// Premultiplied RGB to one plane of Y'CbCr.
uniform vec4 row;        // matrix row, bias last
uniform vec2 reduction;  // pixels that a sample covers, 1 or 2 a side
uniform bool straight;   // an alpha plane goes with it

vec4 MTIRGBToPlane(vec2 uv) {
    ivec2 first = pixelHere() * ivec2(reduction);
    ivec2 last = first + ivec2(reduction) - 1;
    vec4 mean = 0.25 * (readPixel(0, first) + readPixel(0, ivec2(last.x, first.y)) + readPixel(0, ivec2(first.x, last.y)) +
                        readPixel(0, last));
    return vec4(dot(row, sampleColor(mean, straight)));
}
