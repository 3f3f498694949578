// The outgoing picture swells like in a barrel lens; the incoming one comes up out of a pincushion.
#include "borders.glsl"
#include "liquid.glsl"
#include "motion.glsl"
#include "transition.glsl"

uniform float progress;          // linear
uniform float transitionRhythm;  // 0..1 up to the middle, then 0.5..1

// `away` from the middle, pixels of the frame.
vec4 clipAt(vec2 away) {
    vec2 size = outputSize(), place = mirroredPlace(0.5 * size + away, size);
    vec4 next = readPixel(1, pixelAt(place * (inputSize(1) / size)));
    return progress < 0.5 ? readPixel(0, pixelAt(place)) : next;
}

vec4 QVOpticaCompensationFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = (uv - 0.5) * size;
    // 1 at the corners.
    vec2 reach = away * (2.0 * inversesqrt(dot(size, size)));
    float far = dot(reach, reach);
    bool swells = progress < 0.5;
    float depth = swells ? transitionRhythm : 2.0 - 2.0 * transitionRhythm;
    // The rhythm comes and goes within a few frames; more of them show the lens this way.
    depth *= 1.2 / (0.2 + depth);
    float scale = 1.0 + depth * (swells ? 0.75 * far - 0.85 : 0.9 - 0.5 * far);
    // Mirror images beyond the edges of the picture are smeared more, lest they be taken for more people.
    vec2 beyond = max(abs(away) * scale / size - 0.5, 0.0);
    float blur = depth * (0.04 + 0.13 * far) + 0.9 * max(beyond.x, beyond.y);
    // Some grain, so that edges do not show as nine copies.
    vec2 place = away * (scale + 0.25 * blur * tapShift(pixelHere())), way = away * (0.25 * blur);
    vec4 near = clipAt(place - 4.0 * way) + clipAt(place - 3.0 * way) + clipAt(place - 2.0 * way);
    vec4 middle = clipAt(place - way) + clipAt(place) + clipAt(place + way);
    vec4 wide = clipAt(place + 2.0 * way) + clipAt(place + 3.0 * way) + clipAt(place + 4.0 * way);
    return mix(spectrumOf(near, middle, wide) * (1.0 / 3.0), readHere(1), settled(progress, size));
}
