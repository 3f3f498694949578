// Night, and someone searches the picture with a torch: a bright core, a wider halo with the rings of its reflector,
// and a hand that is never still. More strength, a darker night.
#include "noise.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVFlashLightMTIFilter(vec2 uv) {
    vec2 perShortSide = outputSize() / min(outputSize().x, outputSize().y);
    // Four swings without a common measure: two of the search, two of the hand.
    vec4 swing = wave(iTime * vec4(0.143, 0.218, 0.49, 0.68) + vec4(0.3, 0.05, 0.0, 0.32));
    vec2 aim = swing.xy * vec2(0.31, 0.24) + swing.zw * 0.022 / perShortSide;
    vec2 away = (uv - 0.5 - aim) * perShortSide;
    float r2 = dot(away, away);

    float contact = randomOf(vec2(mod(floor(iTime * 15.0), 65536.0), 5.0));  // loose: it fails now and then
    float lamp = 1.0 - max(contact - 0.9, 0.0) * 4.0;
    float core = 1.0 / (1.0 + r2 * r2 * 900.0);
    float halo = 1.0 / (1.0 + r2 * 14.0);
    float rings = 1.0 + 0.07 * wave(r2 * 15.0);
    float light = (core * rings * 0.85 + halo * halo * 0.4) * lamp;

    vec4 color = readHere(0);
    vec3 night = color.rgb * vec3(0.10, 0.13, 0.2) * (1.5 - effectValue);
    vec3 lit = color.rgb * (light * vec3(1.1, 1.03, 0.88)) + color.a * core * lamp * vec3(0.08, 0.075, 0.05);
    vec3 rgb = mix(color.rgb, night + lit, min(effectValue * 1.6 + 0.1, 1.0));
    return vec4(min(rgb, color.aaa), color.a);
}
