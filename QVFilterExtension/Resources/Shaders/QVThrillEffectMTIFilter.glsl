// A heart in fear: with every double beat the picture punches towards the viewer, its colours part, and a red dark
// closes in from the corners. Between the beats it lies cold and still, and the dark breathes.
#include "color.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

// One stroke of the heart at `since` it, as a part of the period: up at once, down slowly.
float stroke(float since) {
    float fall = max(1.0 - since * 2.2, 0.0);
    return min(since * 24.0, 1.0) * fall * fall * step(0.0, since);
}

vec4 QVThrillEffectMTIFilter(vec2 uv) {
    float beat = fract(iTime * 1.4);
    float punch = max(stroke(beat), 0.7 * stroke(beat - 0.27));
    float zoom = 1.0 - effectValue * (0.03 + 0.17 * punch);
    float split = effectValue * (0.016 + 0.06 * punch);

    vec2 fromCenter = uv - 0.5;
    vec4 red = readInput(0, 0.5 + fromCenter * (zoom - split));
    vec4 green = readInput(0, 0.5 + fromCenter * zoom);
    vec4 blue = readInput(0, 0.5 + fromCenter * min(zoom + split, 1.0));
    float alpha = max(green.a, max(red.a, blue.a));
    vec3 rgb = vec3(red.r, green.g, blue.b);

    // Cold and hard: little colour is left, shadows sink, lights stay.
    float grey = luma(rgb);
    float fear = min(1.35 * effectValue, 1.0);
    vec3 cold = mix(vec3(grey), rgb, 0.42 + 0.2 * punch) * vec3(0.84, 1.0, 1.06);
    cold *= 0.5 + 0.72 * grey / max(alpha, 1.0 / 255.0);
    rgb = mix(rgb, cold, fear);
    float r2 = 2.0 * dot(fromCenter, fromCenter);
    float dark = clamp((r2 * (0.95 + 0.8 * punch) + 0.08 * wave(iTime * 0.45)) * fear, 0.0, 1.0);
    rgb *= (1.0 - dark) * (1.0 + 0.4 * punch * effectValue);
    rgb.r += dark * (0.3 + 0.6 * punch) * (0.35 * alpha + grey) * (1.0 - 0.5 * dark);
    return vec4(clamp(rgb, vec3(0.0), vec3(alpha)), alpha);
}
