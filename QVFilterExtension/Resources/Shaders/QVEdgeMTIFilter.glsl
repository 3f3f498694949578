// The picture sinks into the dark and its edges light up like neon tubes: coloured things in their own colours, grey
// ones in a cyan and magenta that flow slowly across.
#include "borders.glsl"
#include "color.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVEdgeMTIFilter(vec2 uv) {
    int reach = int(nearestPixels(min(outputSize().x, outputSize().y) / 480.0));
    ivec2 pixel = pixelHere();
    vec4 here = readHere(0);
    vec3 a = readPixel(0, pixel + ivec2(-reach, -reach)).rgb, b = readPixel(0, pixel + ivec2(0, -reach)).rgb;
    vec3 c = readPixel(0, pixel + ivec2(reach, -reach)).rgb, d = readPixel(0, pixel + ivec2(-reach, 0)).rgb;
    vec3 e = readPixel(0, pixel + ivec2(reach, 0)).rgb, f = readPixel(0, pixel + ivec2(-reach, reach)).rgb;
    vec3 g = readPixel(0, pixel + ivec2(0, reach)).rgb, h = readPixel(0, pixel + ivec2(reach, reach)).rgb;
    // Sobel on each component, so that edges between colours of one brightness are found too.
    vec3 across = (c + 2.0 * e + h) - (a + 2.0 * d + f), along = (f + 2.0 * g + h) - (a + 2.0 * b + c);
    vec3 square = across * across + along * along;
    float strength = sqrt(max(square.r, max(square.g, square.b)));
    float tube = smoothstep(0.25, 1.1, strength);
    float glow = strength * strength / (strength * strength + 0.35);

    vec3 mean = (a + b + c + d + e + f + g + h) * 0.125;
    float top = max(mean.r, max(mean.g, mean.b)) + 0.02;
    vec3 hue = mean / top;
    float grey = min(hue.r, min(hue.g, hue.b));
    float flow = abs(fract(uv.x * 0.45 + uv.y * 0.3 - iTime * 0.08) * 2.0 - 1.0);
    vec3 neon = mix(vec3(0.05, 0.85, 1.0), vec3(1.0, 0.12, 0.75), flow * flow * (3.0 - 2.0 * flow));
    hue = mix(clamp((hue - grey) / (1.02 - grey), 0.0, 1.0), neon, smoothstep(0.3, 0.75, grey));

    vec3 lit = hue * (glow * 0.55 + tube * 0.75) + tube * tube * tube * 0.45;
    float keep = 1.0 - min(effectValue * 1.5, 1.0) * (0.8 + 0.15 * effectValue);
    vec3 rgb = here.rgb * keep + lit * min(effectValue * 1.5 + 0.1, 1.0);
    return vec4(min(rgb, here.aaa), here.a);
}
