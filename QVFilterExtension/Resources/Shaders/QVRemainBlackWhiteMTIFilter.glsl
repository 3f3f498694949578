// A black and white print that takes on colour.
#include "color.glsl"

uniform float filterStrength;  // 0 black and white, 1 the picture

vec4 QVRemainBlackWhiteMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float grey = luma(straight(color));
    // Somewhat harder than the picture, as a print is.
    grey += 0.5 * (grey * grey * (3.0 - 2.0 * grey) - grey);
    return vec4(mix(vec3(grey * color.a), color.rgb, filterStrength), color.a);
}
