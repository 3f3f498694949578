// The outgoing picture swells like in a barrel lens; the incoming one comes up out of a pincushion.
#include "coords.glsl"
#include "liquid.glsl"

uniform float progress;          // linear
uniform float transitionRhythm;  // 0..1 up to the middle, then 0.5..1

vec4 clipAt(vec2 place) { return progress < 0.5 ? readInput(0, place) : readInput(1, place); }

vec4 QVOpticaCompensationFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = uv - 0.5;
    // 1 at the corners.
    vec2 reach = away * size * (2.0 * inversesqrt(dot(size, size)));
    float far = dot(reach, reach);
    bool swells = progress < 0.5;
    float depth = swells ? transitionRhythm : 2.0 - 2.0 * transitionRhythm;
    float scale = 1.0 + depth * (swells ? 0.75 * far - 0.85 : 0.8 + 1.4 * far);
    float fringe = 0.06 * depth * far;
    return partedColors(clipAt(mirrorRepeat(0.5 + away * (scale - fringe))), clipAt(mirrorRepeat(0.5 + away * scale)),
                        clipAt(mirrorRepeat(0.5 + away * (scale + fringe))));
}
