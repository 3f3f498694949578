// What happens in the layers of a colour negative before it is developed. Input 0 is the scene, input 1 its light
// spread in the film's base.
#include "color.glsl"

uniform float effectValue;
uniform float exposure;  // factor of the light

vec4 QVFujiFilmEffectGroupMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec4 spread = readHere(1);
    // What the base throws back reaches the red layer first, then a little of the green one.
    float beyond = max(luma(spread.rgb) - 0.5 * spread.a, 0.0) * 2.0;
    float shadow = pixel.a - luma(pixel.rgb);
    vec3 halo = vec3(0.40, 0.13, 0.05) * (effectValue * beyond * beyond * (0.35 + 0.65 * shadow));
    // A lens softens the finest contrasts.
    vec3 rgb = mix(pixel.rgb, spread.rgb, 0.10 * effectValue) * exposure;

    vec2 fromCenter = uv * 2.0 - 1.0;
    float r2 = dot(fromCenter, fromCenter) * 0.5;
    rgb = rgb * (1.0 - 0.22 * effectValue * r2 * r2) + halo * pixel.a;
    return vec4(clamp(rgb, 0.0, pixel.a), pixel.a);
}
