// A pen drawing on paper: outlines, and up to three layers of hatching that cross where the picture is darker. At low
// strength the picture still shows under the ink as a wash of colour.
#include "borders.glsl"
#include "color.glsl"
#include "noise.glsl"

uniform float effectValue;

// Ink of one layer of strokes along `direction`, 0..1: `tone` is how dark it should get.
float strokes(vec2 p, vec2 direction, float wobble, float tone, float soft) {
    float across = dot(p, vec2(-direction.y, direction.x)) + wobble;
    float off = abs(fract(across) - 0.5) * 2.0;
    float width = clamp(tone, 0.0, 1.0) * 0.48;
    return clamp((width - off) / soft + 0.5, 0.0, 1.0) * clamp(tone * 6.0, 0.0, 1.0);
}

vec4 QVCrosshatchMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float shortSide = min(size.x, size.y);
    int reach = int(nearestPixels(shortSide / 480.0));
    ivec2 pixel = pixelHere();
    vec4 here = readHere(0);
    float a = luma(readPixel(0, pixel - ivec2(reach)).rgb), b = luma(readPixel(0, pixel + ivec2(reach)).rgb);
    float c = luma(readPixel(0, pixel + ivec2(reach, -reach)).rgb);
    float d = luma(readPixel(0, pixel + ivec2(-reach, reach)).rgb);
    float light = (luma(here.rgb) + a + b + c + d) / max(5.0 * here.a, 1.0 / 255.0);
    float outline = smoothstep(0.1, 0.42, abs(a - b) + abs(c - d));

    // The hand is not a ruler: lines wobble slowly, and their pressure changes along them.
    vec2 p = uv * size / shortSide;
    const float kLines = 52.0;  // along the shorter side
    float hand = valueNoise(p * 7.0);
    float wobble = hand * 0.8;
    float soft = max(kLines / shortSide * 1.6, 0.12);
    float dark = 1.0 - light + (hand - 0.5) * 0.12;
    vec2 place = p * kLines;
    float ink = strokes(place, vec2(0.7071, -0.7071), wobble, (dark - 0.22) * 1.5, soft);
    ink = max(ink, strokes(place, vec2(0.7934, 0.6088), wobble, (dark - 0.42) * 1.7, soft));
    ink = max(ink, strokes(place, vec2(0.9962, -0.0872), wobble, (dark - 0.68) * 2.2, soft));
    ink = max(ink, outline);

    vec3 paper = vec3(0.97, 0.955, 0.915) * (0.985 + 0.03 * hand) * here.a;
    float wash = clamp(1.5 - 1.5 * effectValue, 0.0, 1.0);
    vec3 under = mix(paper, here.rgb * 0.6 + paper * 0.4, wash);
    under = mix(under, here.rgb, max(1.0 - 2.5 * effectValue, 0.0));
    float cover = ink * min(effectValue * 2.0, 0.92);
    return vec4(mix(under, vec3(0.09, 0.095, 0.13) * here.a, cover), here.a);
}
