// On the beat three copies leave the picture one after the other, fly towards the viewer and fade.
uniform float effectValue;
uniform float progress;  // 0..1 through the beat, 0 at rest

// Place in the flight of the copy that leaves `late` after the first, as x: 0..1 of its way, y: its opacity.
vec2 flight(float late) {
    float at = clamp((progress - late) / (1.0 - 0.28), 0.0, 1.0);
    float left = 1.0 - at;
    return vec2(1.0 - left * left, min(at * 8.0, 1.0) * left * left);
}

vec4 QVGhostPEMTIFilter(vec2 uv) {
    vec2 away = uv - 0.5;
    float reach = 0.12 + 0.5 * effectValue, presence = 0.35 + 0.5 * effectValue;
    vec2 first = flight(0.0), second = flight(0.14), third = flight(0.28);
    vec4 color = readHere(0);
    color = mix(color, readInput(0, 0.5 + away / (1.0 + reach * third.x)), presence * third.y);
    color = mix(color, readInput(0, 0.5 + away / (1.0 + reach * second.x)), 0.8 * presence * second.y);
    return mix(color, readInput(0, 0.5 + away / (1.0 + reach * first.x)), 0.65 * presence * first.y);
}
