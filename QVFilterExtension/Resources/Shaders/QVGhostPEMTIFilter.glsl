// On the beat three copies leave the picture one after the other, fly towards the viewer and fade.
uniform float effectValue;
uniform float progress;  // 0..1 through the beat, 0 at rest

const float kDelay = 0.14;  // of the beat, from copy to copy

// Flight of the copy that leaves `late`; x: how much of its way is behind it, 0..1; y: its opacity.
vec2 flight(float late) {
    float at = clamp((progress - late) * (1.0 / (1.0 - 2.0 * kDelay)), 0.0, 1.0);
    float left = 1.0 - at;
    return vec2(1.0 - left * left, min(at * 8.0, 1.0) * left * left);
}

// A copy so much larger. It never lies still and is never opaque: nobody sees that it is not interpolated.
vec4 ghost(vec2 away, float scale) { return readPixel(0, ivec2(0.5 * inputSize(0) + away * (1.0 / scale))); }

vec4 QVGhostPEMTIFilter(vec2 uv) {
    vec2 away = (uv - 0.5) * inputSize(0);
    float reach = 0.12 + 0.5 * effectValue, presence = 0.35 + 0.5 * effectValue;
    vec2 first = flight(0.0), second = flight(kDelay), third = flight(2.0 * kDelay);
    vec4 color = mix(readHere(0), ghost(away, 1.0 + reach * third.x), 0.6 * presence * third.y);
    color = mix(color, ghost(away, 1.0 + reach * second.x), 0.8 * presence * second.y);
    return mix(color, ghost(away, 1.0 + reach * first.x), presence * first.y);
}
