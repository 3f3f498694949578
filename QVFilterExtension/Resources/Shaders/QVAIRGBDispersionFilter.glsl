// The subject on a white page through a prism: its colours part in three directions.
// Inputs: the subject on the page, the page.
#include "borders.glsl"

uniform float seperateDistance;  // how far the colours part, 0..1

// Far copies are read at whole pixels: they are never seen alone.
#define COLOR_AT(way) readPixel(0, pixelAt(place + way * reach))

vec4 QVAIRGBDispersionFilter(vec2 uv) {
    vec2 size = inputSize(0), place = uv * size;
    float reach = seperateDistance * min(size.x, size.y) * 0.0833333;
    const vec2 red = vec2(0.966, 0.259), green = vec2(-0.259, -0.966), blue = vec2(-0.707, 0.707);
    // Each ink leaves a fainter trace half way.
    vec3 far = vec3(COLOR_AT(red).r, COLOR_AT(green).g, COLOR_AT(blue).b);
    vec3 near = vec3(COLOR_AT(red * 0.5).r, COLOR_AT(green * 0.5).g, COLOR_AT(blue * 0.5).b);
    vec4 page = readHere(1);
    return vec4(page.rgb * mix(far, near, 0.36), page.a);
}
