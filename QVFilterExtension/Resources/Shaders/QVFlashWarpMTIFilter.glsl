// Light through moving glass: the picture flows in waves, and its brightness flickers.
#include "frame.glsl"
#include "noise.glsl"

uniform float iTime;  // seconds

vec4 QVFlashWarpMTIFilter(vec2 uv) {
    vec2 side = outputSize() / min(outputSize().x, outputSize().y);
    vec2 place = uv * side;
    // Turns a second of the four waves.
    vec4 turn = fract(iTime * vec4(0.37, 0.53, 0.29, 0.71)) * 6.2831853;
    vec4 wave = sin(vec4(place.y * 6.0, place.x * 9.0 + place.y * 5.0, place.x * 5.0, place.x * 7.0 - place.y * 8.0) + turn);
    vec2 flow = vec2(wave.x + 0.5 * wave.y, wave.z + 0.5 * wave.w) * 0.045;
    vec4 color = readInput(0, mirrorAtEdges(uv + flow / side));
    float slot = iTime * 12.0, since = fract(slot);
    float flash = mix(randomOf(floor(slot)), randomOf(floor(slot) + 1.0), since * since * (3.0 - 2.0 * since));
    color.rgb = min(color.rgb * (0.75 + 0.6 * flash * flash), color.a);
    return color;
}
