// An old colour print: yellowed, its blacks brown, and grain that lies still for a while.
#include "color.glsl"
#include "film.glsl"
#include "grain.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVRetroNoisyImageFilter(vec2 uv) {
    vec4 color = readHere(0);
    vec3 c = straight(color);
    float e = effectValue, grey = luma(c);
    // Cyan dye fades first: reds stay, shadows lose their depth to brown, whites take the paper's yellow.
    c = mix(vec3(grey), c, 1.0 - 0.35 * e);
    c.r += (1.0 - c.r) * 0.40 * e * (0.25 + 0.5 * grey * (1.0 - grey));
    vec3 black = (0.05 + 0.13 * e) * vec3(1.0, 0.74, 0.62), white = vec3(1.0, 1.0 - 0.05 * e, 1.0 - 0.19 * e);
    c = black + c * (white - black);

    vec2 size = outputSize(), pixel = vec2(pixelHere());
    float frame = timeSlot(iTime, 8.0);
    vec4 fine = grainAt(grainPlace(pixel, size, 2.0), frame);
    vec2 turned = vec2(0.8 * pixel.x + 0.6 * pixel.y, 0.8 * pixel.y - 0.6 * pixel.x);
    vec4 mottle = grainAt(grainPlace(turned, size, 7.0), frame + 3.0);
    // Unevenly faded, as paper is that lay in a stack.
    vec4 patches = grainAt(grainPlace(pixel, size, 330.0), 5.0);
    c += (fine.x * 0.6 + fine.yzw * 0.3 + mottle.x * 0.35 + mottle.yzw * 0.22) * (0.06 + 0.11 * e);
    c += patches.x * vec3(0.05, 0.035, 0.02) * e + patches.yzw * 0.02 * e;

    vec2 away = uv * 2.0 - 1.0;
    float r2 = dot(away, away) * 0.5;
    c += r2 * r2 * e * vec3(0.08, 0.05, 0.0);
    return premultiplied(clamp(c, 0.0, 1.0), color.a);
}
