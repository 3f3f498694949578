// A lens out of focus: the picture at half size, each pixel a disc there, weighed by its light.
#include "color.glsl"

selector int pass;     // 0 halve, 1 gather the disc, 2 fill between its taps, 3 show
uniform float radius;  // of the disc or what fills it, pixels
uniform float zoom;    // of show: how much larger the picture is
uniform float share;   // of show: of the disc in the picture, less than 1 where it is smaller than a pixel

vec4 halved() {
    ivec2 p = 2 * pixelHere();
    return 0.25 * (readPixel(0, p) + readPixel(0, p + ivec2(1, 0)) + readPixel(0, p + ivec2(0, 1)) +
                   readPixel(0, p + ivec2(1, 1)));
}

struct Light {
    vec4 color;
    float weight;
};

void add(inout Light sum, vec2 place) {
    vec4 color = readPixel(0, pixelHere() + ivec2(floor(place * radius + 0.5)));
    float square = luma(color.rgb) * luma(color.rgb);
    float weight = 0.05 + 4.0 * square * square * square;
    sum.color += color * weight;
    sum.weight += weight;
}

vec4 gathered() {
    Light sum = Light(vec4(0.0), 0.0);
    add(sum, vec2(0.0));
    add(sum, vec2(0.5, 0.0)), add(sum, vec2(-0.5, 0.0));
    add(sum, vec2(0.25, 0.433)), add(sum, vec2(-0.25, 0.433));
    add(sum, vec2(0.25, -0.433)), add(sum, vec2(-0.25, -0.433));
    add(sum, vec2(0.966, 0.259)), add(sum, vec2(-0.966, 0.259));
    add(sum, vec2(0.966, -0.259)), add(sum, vec2(-0.966, -0.259));
    add(sum, vec2(0.707, 0.707)), add(sum, vec2(-0.707, 0.707));
    add(sum, vec2(0.707, -0.707)), add(sum, vec2(-0.707, -0.707));
    add(sum, vec2(0.259, 0.966)), add(sum, vec2(-0.259, 0.966));
    add(sum, vec2(0.259, -0.966)), add(sum, vec2(-0.259, -0.966));
    return sum.color / sum.weight;
}

vec4 tap(vec2 place) { return readPixel(0, pixelHere() + ivec2(floor(place * radius + 0.5))); }

vec4 filled() {
    vec4 sum = tap(vec2(0.0)) + tap(vec2(1.0, 0.0)) + tap(vec2(-1.0, 0.0));
    sum += tap(vec2(0.5, 0.866)) + tap(vec2(-0.5, 0.866)) + tap(vec2(0.5, -0.866)) + tap(vec2(-0.5, -0.866));
    return sum / 7.0;
}

vec4 QVBlurMTIFilter(vec2 uv) {
    if (pass == 0) return halved();
    if (pass == 1) return gathered();
    if (pass == 2) return filled();
    vec2 place = 0.5 + (uv - 0.5) / zoom;
    return mix(readInput(1, place), readInput(0, place), share);
}
