// What the photographer sees: the picture behind the viewfinder, and the veil of the flash.
// Inputs: picture, viewfinder.
#include "exposure.glsl"

uniform float cover;  // of the viewfinder, 0..1
uniform float inset;  // of the finder's rectangle from the frame's sides, pixels
uniform float flash;  // what is left of the flash, 0..1

vec4 QVFilmCameraFlashTransitionMTIFilter(vec2 uv) {
    vec2 r = (uv - 0.5) * 2.0;
    // A tube's light is bluish while it is brightest, and falls off to the corners.
    vec3 veil = flash * (1.15 - 0.35 * dot(r, r)) * mix(vec3(0.8, 0.85, 0.9), vec3(1.0), flash);
    vec4 color = lightOver(readHere(0), clamp(veil, 0.0, 1.0));
    // The finder is darker outside its rectangle.
    vec2 size = outputSize();
    vec2 inside = min(uv, 1.0 - uv) * size - inset;
    color.rgb *= 1.0 - 0.5 * cover * clamp(0.5 - min(inside.x, inside.y), 0.0, 1.0);
    vec4 finder = readHere(1) * cover;
    return finder + color * (1.0 - finder.a);
}
