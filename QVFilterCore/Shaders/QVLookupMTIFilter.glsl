// Colours of input 0 looked up in the table of input 1: 8 x 8 tiles of 64 x 64 entries, red to the right, green down,
// blue from tile to tile. Between entries a colour is mixed of the four corners of the tetrahedron that it lies in: of
// the entries' cube the nearest to black, the farthest from it, and the two on the way along its components, the largest
// first.
#include "color.glsl"

uniform float intensity;  // share of the graded colour, 0..1

ivec2 tileOf(int blue) { return ivec2(blue & 7, blue >> 3) * 64; }

vec4 QVLookupMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec3 color = clamp(straight(pixel), 0.0, 1.0);
    vec3 place = color * 63.0, corner = min(floor(place), 62.0), way = place - corner;
    float most = max(way.r, max(way.g, way.b)), least = min(way.r, min(way.g, way.b));
    float between = way.r + way.g + way.b - most - least;
    bool redFirst = way.r >= way.g && way.r >= way.b, blueFirst = !redFirst && way.g < way.b;
    bool blueLast = way.b <= way.g && way.b <= way.r, redLast = !blueLast && way.g > way.r;

    ivec3 dark = ivec3(corner);
    ivec2 near = tileOf(dark.b) + dark.rg, far = tileOf(dark.b + 1) + dark.rg;
    ivec2 first = (blueFirst ? far : near) + ivec2(redFirst, !(redFirst || blueFirst));
    ivec2 last = (blueLast ? near : far) + ivec2(!redLast, redLast || blueLast);
    vec3 graded = readPixel(1, near).rgb * (1.0 - most) + readPixel(1, first).rgb * (most - between);
    graded += readPixel(1, last).rgb * (between - least) + readPixel(1, far + 1).rgb * least;
    return premultiplied(mix(color, graded, intensity), pixel.a);
}
