// What lies behind the subject sinks into a dim shade of one colour, in which its edges glow. Inputs: frame, and
// the mask, which is not read: the subject is laid over this.
#include "color.glsl"
#include "frame.glsl"

uniform vec3 edgeGlowColor;

vec4 QVAIEdgeGlowFilter(vec2 uv) {
    int reach = max(int(unitPixels(outputSize()) * 1.6 + 0.5), 1);
    ivec2 pixel = pixelHere();
    vec4 here = readHere(0);
    vec3 a = readPixel(0, pixel + ivec2(-reach, -reach)).rgb, b = readPixel(0, pixel + ivec2(reach, -reach)).rgb;
    vec3 c = readPixel(0, pixel + ivec2(-reach, reach)).rgb, d = readPixel(0, pixel + ivec2(reach, reach)).rgb;
    // Differences along both diagonals, of each component, so that edges between colours of one brightness are found too.
    vec3 falling = d - a, rising = b - c;
    vec3 square = falling * falling + rising * rising;
    float contrast = sqrt(max(square.r, max(square.g, square.b)));
    float glow = smoothstep(0.025, 0.30, contrast);
    float light = luma(mix(here.rgb, (a + b + c + d) * 0.25, 0.5));
    vec3 shade = mix(vec3(light), edgeGlowColor * light, 0.75) * 0.38;
    vec3 lit = mix(edgeGlowColor, vec3(1.0), glow * glow * 0.45) * glow;
    return vec4(min(shade + lit, here.aaa), here.a);
}
