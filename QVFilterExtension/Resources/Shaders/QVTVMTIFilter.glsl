// The tube of an old television.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"
#include "particles.glsl"
#include "wave.glsl"

uniform float effectValue;
uniform vec2 opening;   // lit part of the tube: width, height, 0..1
uniform float flash;    // 0..1
uniform float trouble;  // 0..1, while channels change
uniform float channel;  // 0 colour, 1 black and white, 2 overdriven
uniform float draw;     // number of the snow

// Bright colours as the channel shows them.
vec3 tuned(vec3 color) {
    float grey = luma(color);
    vec3 silver = vec3(0.9, 1.0, 1.08) * (grey * grey * (3.0 - 2.0 * grey));
    vec3 loud = (grey + (color - grey) * 1.7) * vec3(1.12, 0.92, 1.16);
    return channel < 0.5 ? color * vec3(1.04, 1.0, 0.96) : channel < 1.5 ? silver : loud;
}

vec4 QVTVMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float effect = min(4.0 * effectValue, 1.0);
    // The tube's glass, -1..1, and how far inside its round corners a place is.
    vec2 glass = uv * 2.0 - 1.0;
    glass *= 1.0 + 0.08 * effectValue * (glass.yx * glass.yx);
    vec2 shape = size / min(size.x, size.y), corner = abs(glass) * shape - shape + 0.24;
    float beyond = length(max(corner, 0.0)) - 0.24;
    float tube = mix(1.0, clamp(-beyond * 0.25 * min(size.x, size.y), 0.0, 1.0), effect);

    vec2 lit = mix(vec2(1.0), opening, effect);
    vec2 place = glass / max(lit, 1e-3);
    vec2 inside = clamp((1.0 - abs(place)) * lit * size * 0.5 + 0.5, 0.0, 1.0);
    float shown = inside.x * inside.y * step(1e-3, lit.x);

    float troubled = trouble * effect;
    vec4 whole = particleDraw(vec2(draw, 0.0), 41.0);
    vec4 band = particleDraw(vec2(floor((uv.y + whole.x) * 24.0), draw), 42.0);
    place = 0.5 + 0.5 * place;
    place.x += troubled * (band.x - 0.5) * 0.12;
    place.y = fract(clamp(place.y, 0.0, 0.9999) + troubled * (0.35 + 0.2 * whole.y));
    float fringe = 0.003 * effectValue + 0.012 * troubled;
    vec4 green = readInput(0, place), red = readInput(0, place + vec2(fringe, 0.0));
    vec4 blue = readInput(0, place - vec2(fringe, 0.0));
    vec4 color = vec4(red.r, green.g, blue.b, max(green.a, max(red.a, blue.a)));

    vec3 rgb = mix(color.rgb, tuned(straight(color)) * color.a, min(2.0 * effectValue, 1.0));
    float unit = nearestPixels(2.0 * unitPixels(size));
    float snow = particleDraw(vec2(pixelHere()) / unit, draw + 43.0).x;
    rgb = mix(rgb, vec3(snow), troubled * (0.3 + 0.6 * band.y));
    rgb += (snow - 0.5) * 0.08 * effectValue;
    // No more lines than the frame has pixels for.
    float lines = 0.5 + 0.5 * wave(uv.y * min(240.0, floor(size.y / 3.0)));
    rgb *= 1.0 + effectValue * (0.3 - 0.5 * lines - 0.28 * dot(glass, glass) * 0.5);
    rgb += flash * effect * (0.25 + 0.75 * smoothstep(0.7, 0.0, lit.y)) * (1.0 - rgb);
    color.rgb = clamp(rgb, 0.0, color.a);
    // The set around the tube is black.
    float dark = 1.0 - tube * shown;
    return vec4(color.rgb * (1.0 - dark), mix(color.a, max(color.a, effect), dark));
}
