// Glowing outlines leave the subject one after the other, rise behind it, swell and fade.
// Inputs: the frame, the subject's mask, the mask much blurred.
#include "wave.glsl"

uniform float iTime;     // place in the life of the first outline, 0..1
uniform float reach;     // how far outlines swell, shorter sides of the frame
uniform float glow;      // their brightness, 0..1
uniform vec3 nearColor;  // at the subject
uniform vec3 farColor;   // where they end

const float kBlur = 0.035;  // standard deviation of the blurred mask, shorter sides of the frame

// Distance from an edge, outwards, that a Gaussian blurred to `value`: the logistic function is close to its integral.
float outwards(float value) {
    float inside = clamp(value, 0.0004, 0.9996);
    return (kBlur / 1.702) * log((1.0 - inside) / inside);
}

// Light of the outline that has lived for `age`, 0..1.
vec3 outline(float value, float age) {
    float from = outwards(value) - reach * age;
    // A bright line with a glow that reaches inwards, where the ghost is.
    float line = 0.0018 + 0.004 * age, near = from / line;
    float around = from * (from > 0.0 ? 140.0 : 50.0);
    float light = 1.0 / (1.0 + near * near) + 0.3 / (1.0 + around * around);
    return mix(nearColor, farColor, age) * (light * (1.0 - age) * (1.0 - 0.45 * age) * min(age * 8.0, 1.0));
}

#define OUTLINE(first) \
    { \
        float age = fract(iTime + first); \
        float sway = wave(age * 0.7 + first) + waver; \
        vec2 from = vec2(0.25 * sway, -1.1 * age) * (reach * age) * unit; \
        light += outline(readInput(2, uv - from).r, age); \
    }

vec4 QVAIGhostContourFilter(vec2 uv) {
    vec2 size = inputSize(0), unit = min(size.x, size.y) / size;
    vec4 frame = readHere(0);
    float behind = 1.0 - clamp(readHere(1).r, 0.0, 1.0);
    float waver = 0.35 * wave(uv.y * 2.3 + iTime);
    vec3 light = vec3(0.0);
    OUTLINE(0.0) OUTLINE(0.3333333) OUTLINE(0.6666667)
    light = min(light * (1.5 * glow * behind), 1.0);
    // The scene darkens, so that light shows on it; light that meets light saturates.
    vec3 scene = frame.rgb * (1.0 - 0.45 * glow * behind);
    return vec4(light * frame.a + scene * (1.0 - light), frame.a);
}
