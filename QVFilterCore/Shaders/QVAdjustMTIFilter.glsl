// Channel gains, then a bend of the tones that keeps black and white.
#include "color.glsl"

uniform vec3 gain;
uniform float bend;  // 1 straight, below 1 brighter, above 1 darker

vec4 QVAdjustMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec3 color = clamp(straight(pixel) * gain, 0.0, 1.0);
    return premultiplied(color / (color + (1.0 - color) * bend), pixel.a);
}
