// On the beat three copies leave the picture one after the other as pale light, fly towards the viewer and fade, while
// the picture itself sinks into the dark for a moment.
#include "borders.glsl"

uniform float effectValue;
uniform float progress;  // 0..1 through the beat, 0 at rest

const float kDelay = 0.16;  // of the beat, from copy to copy

// Flight of the copy that leaves `late`; x: how much of its way is behind it, 0..1; y: its opacity.
vec2 flight(float late) {
    float at = clamp((progress - late) * (1.0 / (1.0 - 2.0 * kDelay)), 0.0, 1.0);
    float left = 1.0 - at;
    return vec2(1.0 - left * left, min(at * 8.0, 1.0) * left * sqrt(left));
}

// The light of a copy so much larger, without its shadows. It never lies still and is never opaque: nobody sees that it
// is not interpolated.
vec3 ghost(vec2 away, float scale) {
    vec3 light = readPixel(0, pixelAt(0.5 * inputSize(0) + away * (1.0 / scale))).rgb;
    return light * (0.25 + 0.75 * light);
}

vec4 QVGhostPEMTIFilter(vec2 uv) {
    vec2 away = (uv - 0.5) * inputSize(0);
    float reach = 0.14 + 0.56 * effectValue, presence = effectValue * (1.9 - 0.9 * effectValue);
    vec2 first = flight(0.0), second = flight(kDelay), third = flight(2.0 * kDelay);
    vec4 color = readHere(0);
    float dark = 0.62 * presence * max(first.y, max(second.y, third.y));
    vec3 rgb = color.rgb * (1.0 - dark);
    // Light adds up as in a double exposure; the copies are colder the farther they are from the picture.
    rgb += ghost(away, 1.0 + reach * third.x) * (color.a - rgb) * (presence * third.y) * vec3(0.8, 0.95, 1.0);
    rgb += ghost(away, 1.0 + reach * second.x) * (color.a - rgb) * (presence * second.y) * vec3(0.6, 0.9, 1.0);
    rgb += ghost(away, 1.0 + reach * first.x) * (color.a - rgb) * (presence * first.y) * vec3(0.5, 0.8, 1.0);
    return vec4(rgb, color.a);
}
