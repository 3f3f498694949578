// Light through moving glass: the picture flows in waves, and its brightness flickers.
#include "frame.glsl"
#include "noise.glsl"
#include "wave.glsl"

uniform float iTime;  // seconds

vec4 QVFlashWarpMTIFilter(vec2 uv) {
    vec2 side = outputSize() / min(outputSize().x, outputSize().y);
    vec2 place = uv * side;
    // Turns a second of the four waves.
    vec4 turn = fract(iTime * vec4(0.37, 0.53, 0.29, 0.71));
    vec4 along = vec4(place.y, place.x * 1.5 + place.y * 0.8, place.x * 0.8, place.x * 1.1 - place.y * 1.3);
    vec4 bend = wave(along + turn);
    vec2 flow = vec2(bend.x + 0.5 * bend.y, bend.z + 0.5 * bend.w) * 0.045;
    vec4 color = readInput(0, mirrorAtEdges(uv + flow / side));
    float slot = mod(iTime * 12.0, 1e6), since = fract(slot);
    float flash = mix(randomOf(floor(slot)), randomOf(floor(slot) + 1.0), since * since * (3.0 - 2.0 * since));
    color.rgb = min(color.rgb * (0.75 + 0.6 * flash * flash), color.a);
    return color;
}
