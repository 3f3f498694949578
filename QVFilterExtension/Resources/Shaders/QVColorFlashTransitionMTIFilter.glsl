// Light leaks into the camera: warm, magenta and cyan, sweeping from left to right and taking the outgoing clip with
// it. Inputs: outgoing, incoming.
#include "exposure.glsl"
#include "wave.glsl"

uniform float progress;
uniform float start;  // seconds
uniform float ratio;            // width over height of the frame

// Light around a slanting line `at`, 0..1, soft on both sides.
float leak(float across, float at, float width) {
    float d = (across - at) / width;
    float near = 1.0 / (1.0 + d * d);
    return near * near;
}

vec4 QVColorFlashTransitionMTIFilter(vec2 uv) {
    // Slow at both ends; the lines hang and bend.
    float eased = progress * progress * (3.0 - 2.0 * progress);
    float sweep = mix(-0.41, 1.47, mix(progress, eased, 0.6));
    vec2 fromCenter = uv - 0.5;
    float bend = fromCenter.y * fromCenter.y;
    float across = uv.x - 0.3 * fromCenter.y / max(ratio, 1.0) + 0.25 * bend;

    float taken = smoothstep(-0.25, 0.25, sweep - across);
    vec4 picture = mix(readHere(0), readHere(1), taken);

    float middle = progress * (1.0 - progress) * 4.0;
    float power = middle * (2.0 - middle);
    // The light breathes along the lines.
    float phase = start * 0.37 + progress * 0.9;
    vec3 breath = 0.8 + 0.2 * vec3(wave(uv.y * 0.7 + phase), wave(uv.y * 0.9 - phase * 1.3 + 0.3),
                                   wave(uv.y * 0.6 + phase * 0.8 + 0.6));
    float warm = leak(across, sweep, 0.26 + 0.1 * bend) * breath.x;
    float magenta = leak(across + 0.35 * fromCenter.y, sweep + 0.3, 0.2) * breath.y;
    float cyan = leak(across - 0.45 * fromCenter.y, sweep - 0.36, 0.22) * breath.z;
    float core = leak(across, sweep - 0.02, 0.11);
    vec3 light = warm * vec3(1.15, 0.52, 0.12) + magenta * vec3(0.85, 0.1, 0.5) + cyan * vec3(0.05, 0.5, 0.72) +
                 core * vec3(0.75, 0.7, 0.5) + vec3(0.1, 0.045, 0.03);
    return lightOver(picture, light * power);
}
