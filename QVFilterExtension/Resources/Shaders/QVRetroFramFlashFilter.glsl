// Light sweeps in over an edge: white hot at the edge, its own colour within, and a red rim where it ends.
#include "exposure.glsl"
#include "sidelight.glsl"

uniform float motionProgress;  // 0..1 of the sweep
uniform vec3 color;
uniform int side;  // 0 left, 1 top, 2 right, 3 bottom

vec4 QVRetroFramFlashFilter(vec2 uv) {
    vec2 place = fromSide(uv, side);
    // Uneven along the edge, and otherwise for each edge and colour.
    float phase = float(side) * 0.31 + color.g * 5.0;
    float uneven = 1.0 + 0.22 * wave(place.y * 0.8 + phase) + 0.10 * wave(place.y * 2.1 - phase);
    float reach = (0.05 + 0.26 * motionProgress) * uneven;
    float d = place.x / reach;
    float power = motionProgress * (2.0 - motionProgress);

    vec3 ember = vec3(color.r, color.g * color.g * 0.55, color.b * 0.25);
    vec3 light = color * (0.95 * glowAt(d * 1.2)) + ember * (0.60 * glowAt(d * 0.70)) +
                 vec3(0.60, 0.55, 0.44) * glowAt(d * 3.0);
    light = onFilm(light * power);
    return lightOver(overexposed(readHere(0), 1.0 + light), light);
}
