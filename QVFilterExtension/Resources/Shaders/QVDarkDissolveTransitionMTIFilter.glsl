// Through the dark: shadows sink first and highlights last, and of the other clip the highlights rise first.
// Inputs: outgoing, incoming.
#include "color.glsl"

uniform float progress;

// How much of a pixel is left at `time` 0..1 when the darkest go first; each takes half of the time.
float remaining(float brightness, float time) {
    float left = clamp(brightness + 1.0 - 2.0 * time, 0.0, 1.0);
    return left * left * (3.0 - 2.0 * left);
}

// A clip's own time: a progress that is eased hard leaves it the middle of the transition only, which is spread here.
float timeOf(float progress) { return sqrt(min(progress * 1.12, 1.0)); }

vec4 QVDarkDissolveTransitionMTIFilter(vec2 uv) {
    vec4 outgoing = readHere(0), incoming = readHere(1);
    float sinking = remaining(luma(outgoing.rgb), timeOf(progress));
    float rising = remaining(luma(incoming.rgb), timeOf(1.0 - progress));
    vec4 lower = outgoing * sinking, upper = incoming * rising;
    float alpha = mix(outgoing.a, incoming.a, progress);
    return vec4(min(lower.rgb + upper.rgb * (1.0 - lower.rgb), vec3(alpha)), alpha);
}
