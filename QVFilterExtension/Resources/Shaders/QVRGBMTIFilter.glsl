// Red and blue part from green.
#include "borders.glsl"
#include "frame.glsl"
#include "noise.glsl"
#include "wave.glsl"

uniform float iTime;  // seconds
uniform float xOff;   // how far they part, widths of the frame
// 0: to the left and right; 1: round a flat ring, once in two seconds; 2: in torn bands that jump twelve times a
// second.
selector int level;

vec4 QVRGBMTIFilter(vec2 uv) {
    vec2 shift = vec2(xOff, 0.0);
    if (level == 1) {
        float turn = fract(iTime * 0.5);
        shift = xOff * vec2(wave(turn), wave(turn - 0.25) * 0.5 * outputSize().x / outputSize().y);
    }
    if (level == 2) {
        float beat = floor(mod(iTime * 12.0, 1e6));
        // Broad bands, and fine ones within them.
        float y = offBorders(uv).y;
        vec3 band = random3Of(vec3(floor(y * 9.0 + 3.0 * fract(beat * 0.618034)), floor(y * 41.0), beat));
        shift.x *= 0.3 + 4.0 * (band.x - 0.5) * step(0.6, band.y);
    }
    vec4 red = readPixel(0, pixelAt(mirrorAtEdges(uv - shift) * inputSize(0)));
    vec4 blue = readPixel(0, pixelAt(mirrorAtEdges(uv + shift) * inputSize(0)));
    vec4 green = readHere(0);
    return vec4(red.r, green.g, blue.b, max(green.a, max(red.a, blue.a)));
}
