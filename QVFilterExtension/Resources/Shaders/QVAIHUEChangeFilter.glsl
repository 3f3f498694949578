// All hues turn, further at the lower right; greys take on a tint of the turning colour.
#include "color.glsl"
#include "gamut.glsl"
#include "wave.glsl"

uniform float progress;  // 0 leaves the picture; turns of the colour wheel

vec4 QVAIHUEChangeFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec3 color = straight(pixel);
    float gray = luma(color);
    float turn = progress * (0.9 + 0.1 * (uv.x + uv.y));

    // About the grey axis, then back to its own luma.
    float cosine = wave(turn), sine = wave(turn - 0.25);
    vec3 about = vec3(color.b - color.g, color.r - color.b, color.g - color.r) * 0.57735;
    float mean = (color.r + color.g + color.b) / 3.0;
    vec3 turned = (color - mean) * cosine + about * sine;
    vec3 tint = hueColor(turn + 0.55);
    turned = turned * (1.0 + 0.55 * progress) + (tint - luma(tint)) * (1.5 * progress * gray * (1.0 - gray));
    vec3 changed = gray + turned - luma(turned);
    float start = min(progress * 8.0, 1.0);
    return premultiplied(mix(color, fitGamut(changed, gray, 1.0), start), pixel.a);
}
