// Four prints of two clips on a page. Inputs: outgoing, incoming, the page.
#include "borders.glsl"
#include "color.glsl"

// Of a print: x, y its middle, fractions of the frame; z, w cosine and sine of its turn, anticlockwise, over its scale.
uniform vec4 print1, print2, print3, print4;
uniform vec4 incoming, grey;  // 1 for each print of the incoming clip, in black and white

// The place in a print; outside 0..1 beside it.
vec2 placeIn(vec4 print, vec2 uv, vec2 size) {
    vec2 away = (uv - print.xy) * size;
    return 0.5 + vec2(print.z * away.x - print.w * away.y, print.z * away.y + print.w * away.x) / size;
}

bool within(vec2 place) { return max(abs(place.x - 0.5), abs(place.y - 0.5)) < 0.5; }

vec4 QVTearPaperFourPicMTIFilter(vec2 uv) {
    vec2 size = outputSize(), at = offBorders(uv);
    vec2 place1 = placeIn(print1, at, size), place2 = placeIn(print2, at, size);
    vec2 place3 = placeIn(print3, at, size), place4 = placeIn(print4, at, size);
    // x: a print, y: of the incoming clip, z: grey.
    vec2 place = place1;
    vec3 what = within(place1) ? vec3(1.0, incoming.x, grey.x) : vec3(0.0);
    if (within(place2)) place = place2, what = vec3(1.0, incoming.y, grey.y);
    if (within(place3)) place = place3, what = vec3(1.0, incoming.z, grey.z);
    if (within(place4)) place = place4, what = vec3(1.0, incoming.w, grey.w);
    vec4 color = what.y > 0.5 ? readInput(1, place) : readInput(0, place);
    color.rgb = mix(color.rgb, vec3(luma(color.rgb)), what.z);
    return mix(readHere(2), color, what.x);
}
