// A picture off a video cassette. Input 1 is what the tape does to it: red noise about a quarter, green the throw of a
// line about a half, the same all along it but for a dither, blue the loss of colour.
#include "color.glsl"

uniform float effectValue;

vec4 QVVhsMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float grain = min(size.x, size.y) / 480.0 * effectValue;  // what the tape can resolve of a line, pixels
    vec3 tape = readInput(1, uv).rgb;

    // Where the heads switch, the last lines bend to the side and drown in noise.
    float below = clamp((uv.y - 0.986) / 0.014, 0.0, 1.0);
    float row = uv.y * inputSize(1).y - 0.5, above = floor(row);
    float thrown = mix(readPixel(1, ivec2(0, int(above))).g, readPixel(1, ivec2(0, int(above) + 1)).g, row - above);
    float throwAside = (thrown - 0.5) * 0.25 + below * (0.02 + 0.10 * below);
    ivec2 here = ivec2(pixelHere().x - int(floor(throwAside * effectValue * size.x + 0.5)), pixelHere().y);
    ivec2 step1 = ivec2(int(1.1 * grain + 0.5), 0), step2 = ivec2(int(4.0 * grain + 0.5), 0);

    vec4 color = readPixel(0, here);
    vec3 left = readPixel(0, here - step1).rgb, right = readPixel(0, here + step1).rgb;
    vec3 behind = readPixel(0, here - step2).rgb, ahead = readPixel(0, here + step2).rgb;
    vec3 farBehind = readPixel(0, here - 2 * step2).rgb, last = readPixel(0, here - 3 * step2).rgb;

    // Brightness is soft, and rings after an edge. Colour comes late and smeared.
    float soft = luma(color.rgb * 0.4 + (left + right) * 0.3);
    float ringing = luma(color.rgb - behind);
    float light = mix(luma(color.rgb), soft + clamp(0.22 * ringing, -0.1, 0.1), effectValue);
    vec3 smeared = 0.1 * ahead + 0.2 * color.rgb + 0.25 * behind + 0.25 * farBehind + 0.2 * last;
    vec3 tint = mix(color.rgb - luma(color.rgb), smeared - luma(smeared), effectValue);

    float noise = (tape.r - 0.25) * 2.4 * (1.0 + 0.8 * below) * effectValue;
    tint *= 1.0 - clamp(tape.b + below, 0.0, 1.0) * effectValue;
    vec3 rgb = light + tint * (1.0 - 0.5 * abs(noise)) + noise * color.a;
    return vec4(clamp(rgb, 0.0, color.a), color.a);
}
