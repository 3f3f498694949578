// A heart in fear: with every double beat the picture punches towards the viewer, its colours part, and the dark
// closes in from the corners in red. Between the beats it lies pale and still.
#include "color.glsl"

uniform float iTime;
uniform float effectValue;

// One stroke of the heart at `since` it, as a part of the period: up at once, down slowly.
float stroke(float since) {
    float fall = max(1.0 - since * 3.2, 0.0);
    return min(since * 30.0, 1.0) * fall * fall * step(0.0, since);
}

vec4 QVThrillEffectMTIFilter(vec2 uv) {
    float beat = fract(iTime * 1.25);
    float punch = max(stroke(beat), 0.65 * stroke(beat - 0.26));
    float zoom = 1.0 - effectValue * (0.02 + 0.15 * punch);
    float split = effectValue * (0.004 + 0.05 * punch);

    vec2 fromCenter = uv - 0.5;
    vec4 red = readInput(0, 0.5 + fromCenter * (zoom - split));
    vec4 green = readInput(0, 0.5 + fromCenter * zoom);
    vec4 blue = readInput(0, 0.5 + fromCenter * min(zoom + split, 1.0));
    float alpha = max(green.a, max(red.a, blue.a));
    vec3 rgb = vec3(red.r, green.g, blue.b);

    float grey = luma(rgb);
    rgb = mix(rgb, vec3(grey), 0.6 * effectValue);
    float r2 = 2.0 * dot(fromCenter, fromCenter);
    float dark = clamp(r2 * (0.75 + 0.6 * punch) * effectValue, 0.0, 1.0);
    rgb = rgb * (1.0 - dark) * (1.0 + 0.25 * punch * effectValue);
    rgb.r += dark * (0.1 + 0.45 * punch) * (0.35 * alpha + grey);
    return vec4(clamp(rgb, vec3(0.0), vec3(alpha)), alpha);
}
