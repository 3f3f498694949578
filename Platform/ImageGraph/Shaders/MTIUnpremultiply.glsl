#include "color.glsl"

vec4 MTIUnpremultiply(vec2 uv) {
    vec4 pixel = readHere(0);
    return vec4(straight(pixel), pixel.a);
}
