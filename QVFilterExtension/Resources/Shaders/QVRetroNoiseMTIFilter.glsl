// Film out of the wrong bath: steep, turquoise in the shadows and yellow in the lights, with coarse coloured grain.
#include "color.glsl"
#include "film.glsl"
#include "grain.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVRetroNoiseMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    vec3 c = straight(color);
    vec2 size = outputSize(), pixel = vec2(pixelHere());
    float frame = timeSlot(iTime, 24.0);
    vec4 fine = grainAt(grainPlace(pixel, size, 2.2), frame);
    vec2 turned = vec2(0.8 * pixel.x - 0.6 * pixel.y, 0.6 * pixel.x + 0.8 * pixel.y);
    vec4 coarse = grainAt(grainPlace(turned, size, 5.0), frame + 7.0);
    float grey = luma(c);
    vec3 grain = fine.xxx * 0.7 + coarse.xxx * 0.5 + fine.yzw * 0.65 + coarse.yzw * 0.55;
    c += grain * (0.06 + 0.12 * effectValue) * (1.15 - 0.75 * grey);
    c = clamp(c, 0.0, 1.0);
    c *= 1.28 - 0.28 * c;  // pushed

    // Each layer has a curve of its own: red steep with a toe, green lifted, blue flat and never black or white.
    vec3 steep = c * c * (3.0 - 2.0 * c);
    vec3 curved = mix(c, steep, vec3(0.95, 0.75, 0.3)) * vec3(1.0, 0.96, 0.66) + vec3(0.0, 0.02, 0.16);
    float light = luma(curved);
    curved = mix(vec3(light), curved, 1.12);
    curved += (1.0 - light) * (1.0 - light) * vec3(-0.05, 0.02, 0.07) + light * light * vec3(0.05, 0.055, -0.10);

    vec2 away = uv * 2.0 - 1.0;
    float r2 = dot(away, away) * 0.5;
    curved *= 1.0 - r2 * (0.20 + 0.55 * r2);
    return premultiplied(clamp(curved, 0.0, 1.0), color.a);
}
