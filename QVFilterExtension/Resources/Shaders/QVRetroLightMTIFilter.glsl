// Golden, faded film with two lights that wander over it. Inputs: the picture, two lights on black.
#include "color.glsl"
#include "exposure.glsl"
#include "film.glsl"
#include "grain.glsl"

uniform float iTime;
uniform float effectValue;
uniform vec4 firstLight;   // shift right and down in sides of the frame, strength, 1 or -1: mirrored
uniform vec4 secondLight;

vec2 lightPlace(vec2 uv, vec4 light) {
    vec2 at = uv - 0.5;
    return vec2(at.x * light.w, at.y) - light.xy + 0.5;
}

vec4 QVRetroLightMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    vec3 c = straight(color);
    float grey = luma(c);
    // Dyes fade: blacks lift to a warm brown, whites to cream, and what lies between turns golden.
    vec3 film = mix(vec3(grey), c, 1.12);
    film = film * vec3(0.90, 0.84, 0.72) + vec3(0.085, 0.052, 0.050);
    film += grey * (1.0 - grey) * vec3(0.18, 0.095, -0.06);
    film = mix(c, film, 0.4 + 0.6 * effectValue);

    vec2 size = outputSize();
    float frame = timeSlot(iTime, 18.0);
    vec4 grain = grainAt(grainPlace(vec2(pixelHere()), size, 2.4), frame);
    film += (grain.x * 0.75 + grain.yzw * 0.35) * (0.035 + 0.04 * effectValue) * (1.2 - 0.8 * grey);
    vec2 away = uv * 2.0 - 1.0;
    float r2 = dot(away, away) * 0.5;
    film *= (1.0 - 0.26 * effectValue * r2 * r2) * (1.0 + 0.035 * projectorState(iTime).z);

    vec3 light = readInput(1, lightPlace(uv, firstLight)).rgb * firstLight.z +
                 readInput(2, lightPlace(uv, secondLight)).rgb * secondLight.z;
    vec4 lit = overexposed(premultiplied(clamp(film, 0.0, 1.0), color.a), 1.0 + 0.8 * light);
    return lightOver(lit, light);
}
