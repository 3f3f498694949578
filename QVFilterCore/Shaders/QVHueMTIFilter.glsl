// Colours through a matrix that keeps greys.
#include "color.glsl"
#include "gamut.glsl"

uniform vec3 redRow;
uniform vec3 greenRow;
uniform vec3 blueRow;

vec4 QVHueMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec3 turned = vec3(dot(pixel.rgb, redRow), dot(pixel.rgb, greenRow), dot(pixel.rgb, blueRow));
    return vec4(fitGamut(turned, luma(turned), pixel.a), pixel.a);
}
