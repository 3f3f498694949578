// The outgoing picture swells like in a barrel lens; the incoming one comes up out of a pincushion.
#include "frame.glsl"
#include "liquid.glsl"
#include "motion.glsl"

uniform float progress;          // linear
uniform float transitionRhythm;  // 0..1 up to the middle, then 0.5..1

// `away` from the middle.
vec4 clipAt(vec2 away) {
    vec2 place = mirrorAtEdges(0.5 + away);
    return progress < 0.5 ? readInput(0, place) : readInput(1, place);
}

vec4 QVOpticaCompensationFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = uv - 0.5;
    // 1 at the corners.
    vec2 reach = away * size * (2.0 * inversesqrt(dot(size, size)));
    float far = dot(reach, reach);
    bool swells = progress < 0.5;
    float depth = swells ? transitionRhythm : 2.0 - 2.0 * transitionRhythm;
    // The rhythm comes and goes within a few frames; more of them show the lens this way.
    depth *= 1.2 / (0.2 + depth);
    float scale = 1.0 + depth * (swells ? 0.75 * far - 0.85 : 1.1 - 0.6 * far);
    float blur = depth * (0.02 + 0.07 * far);
    // Some grain, so that edges do not show as three copies.
    vec2 place = away * (scale + 0.4 * blur * tapShift(pixelHere())), way = away * blur;
    return spectrumOf(clipAt(place - way), clipAt(place), clipAt(place + way));
}
