// A glass ball that grows out of the middle. Inside it the incoming picture bulges; around it the outgoing one is bent.
#include "frame.glsl"
#include "liquid.glsl"

uniform float progress;   // eased; the ball covers the frame at 0.8
uniform float rgbWeight;  // 0..1, how far the colours part

vec4 QVFishEyeLensFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = uv - 0.5;
    // In half diagonals of the frame, as all lengths here.
    float pixels = 0.5 * length(size);
    float far = length(away * size) / pixels;
    // Each colour has its own ball, and its places in it are told by the square of their way to the rim.
    vec3 radii = 1.3 * progress * (1.0 + vec3(-0.04, 0.0, 0.04) * rgbWeight);
    vec3 share = clamp((radii - far) * max(0.7 * pixels, 4.0), 0.0, 1.0);
    vec3 e = far / max(radii, 1e-4);
    e *= e;
    vec3 bulge = 1.0 + (1.0 - progress) * (0.9 * e * e - 0.45);
    float bend = 1.0 - 0.3 * rgbWeight / max(e.y * e.y, 1.0);
    vec4 outgoing = readInput(0, 0.5 + away * bend);
    vec4 red = readInput(1, mirrorAtEdges(0.5 + away * bulge.x));
    vec4 green = readInput(1, mirrorAtEdges(0.5 + away * bulge.y));
    vec4 blue = readInput(1, mirrorAtEdges(0.5 + away * bulge.z));
    return partedColors(mix(outgoing, red, share.x), mix(outgoing, green, share.y), mix(outgoing, blue, share.z));
}
