// The picture as a print with a white border and a shadow, once a flash has taken it.
#include "exposure.glsl"
#include "frame.glsl"

uniform float progress;          // of the clip
uniform float durationProgress;  // share of the clip that is not motion at its ends

const float kBorder = 34.0, kShadow = 30.0;  // 1/1080 of the shorter side

// How far inside a rectangle inset by `inset` on all sides a place lies.
float inside(vec2 place, vec2 frame, float inset) {
    vec2 toEdge = min(place, frame - place) - inset;
    return min(toEdge.x, toEdge.y);
}

vec4 QVCameraFreezeMTIFilter(vec2 uv) {
    float a = (1.0 - durationProgress) * 0.25;
    float lift = smoothstep(a, 2.0 * a, progress) - smoothstep(1.0 - 2.0 * a, 1.0 - a, progress);
    float fading = 1.0 - smoothstep(a, 2.0 * a, progress);
    float flash = smoothstep(a - 0.02, a, progress) * fading * fading;

    vec4 color = overexposed(readHere(0), vec3(1.0 + 9.0 * flash));
    color = lightOver(color, flash * vec3(0.94, 0.97, 1.0));

    float unit = unitPixels(outputSize());
    vec2 frame = outputSize() / unit, place = uv * frame;
    float margin = kShadow * lift;
    float paper = inside(place, frame, margin) * unit;
    float image = inside(place, frame, margin + kBorder * lift) * unit;
    float onPaper = clamp(paper + 0.5, 0.0, 1.0), onImage = clamp(image + 0.5, 0.0, 1.0);
    // Light from above left: the shadow is wider below and to the right. The image lies a little below its paper.
    float shade = clamp(inside(place - vec2(3.0, 5.0) * lift, frame, 0.0) / max(margin, 1e-3), 0.0, 1.0);
    float edge = 1.0 - 0.10 * clamp(1.0 - abs(image) / (2.5 * unit), 0.0, 1.0);
    vec3 white = vec3(0.985, 0.98, 0.965) * edge;

    vec4 print = mix(vec4(white, 1.0), color, onImage);
    vec4 shadow = vec4(0.0, 0.0, 0.0, 0.5 * shade * shade);
    return mix(color, mix(shadow, print, onPaper), step(1e-4, lift));
}
