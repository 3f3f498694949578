// The subject on a white page in a red and a cyan print out of register, the cyan one larger.
// Inputs: the subject on the page, the page.
#include "borders.glsl"
#include "color.glsl"

uniform float seperateDistance;   // how far the prints part, 0..1
uniform float seperateZoomValue;  // how much larger the cyan one is, 0..1

vec4 QVAIRGBCyanSeperateFilter(vec2 uv) {
    vec2 size = inputSize(0), middle = 0.5 * size, away = uv * size - middle;
    vec2 aside = vec2(seperateDistance * 0.0625 * min(size.x, size.y), 0.0);
    float larger = 1.0 + 0.5 * seperateDistance * seperateZoomValue;
    vec3 cyan = readPixel(0, pixelAt(middle + away / larger + aside)).rgb;
    vec3 red = readPixel(0, pixelAt(middle + away - aside)).rgb;
    // A print out of register is of one ink: its tone counts, not the one colour that it absorbs.
    float tone = 0.6 * min(seperateDistance * 4.0, 1.0);
    vec4 page = readHere(1);
    return vec4(page.rgb * vec3(mix(cyan.r, luma(cyan), tone), mix(red.gb, vec2(luma(red)), tone)), page.a);
}
