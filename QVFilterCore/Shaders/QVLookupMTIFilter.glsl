// Colours of input 0 looked up in the table of input 1: 8 x 8 tiles of 64 x 64 entries, red to the right, green down,
// blue from tile to tile. One linear read serves red and green, two tiles serve blue.
#include "color.glsl"

uniform float intensity;  // share of the graded colour, 0..1

vec3 entryOf(vec2 redGreen, float slice) {
    float tileRow = floor(slice / 8.0);
    vec2 tile = vec2(slice - 8.0 * tileRow, tileRow);
    return readInput(1, (tile * 64.0 + 0.5 + redGreen * 63.0) / 512.0).rgb;
}

vec4 QVLookupMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec3 color = clamp(straight(pixel), 0.0, 1.0);
    float blue = color.b * 63.0;
    float slice = min(floor(blue), 62.0);
    vec3 graded = mix(entryOf(color.rg, slice), entryOf(color.rg, slice + 1.0), blue - slice);
    return premultiplied(mix(color, graded, intensity), pixel.a);
}
