// A small camcorder's picture: edges sharpened along the lines, colour smeared along them, the noise of a sensor at
// raised gain, and the faint structure of its lines. A table gives it its tones.
#include "color.glsl"
#include "film.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVRecFilmEffectGroupMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float line = max(min(size.x, size.y) / 540.0, 1.0);  // of the sensor, pixels
    ivec2 here = pixelHere();
    ivec2 near = ivec2(int(line + 0.5), 0), far = ivec2(int(3.0 * line + 0.5), 0);
    vec4 color = readHere(0);
    vec3 left = readPixel(0, here - near).rgb, right = readPixel(0, here + near).rgb;
    vec3 farLeft = readPixel(0, here - far).rgb, farRight = readPixel(0, here + far).rgb;

    float light = luma(color.rgb);
    float edge = light - 0.5 * luma(left + right);
    vec3 mean = 0.2 * (color.rgb + left + right + farLeft + farRight);
    vec3 tint = mix(color.rgb - light, mean - luma(mean), effectValue);
    light += clamp(0.9 * effectValue * edge, -0.12, 0.12);

    vec4 draw = particleDraw(vec2(here) / line, timeSlot(iTime, 30.0));
    float grain = (draw.x + draw.y - 1.0) * 0.05 * effectValue * (1.0 - 0.6 * light);
    // Where lines would be thinner than a pixel there are none.
    float rows = fract(float(here.y) * 0.5 / floor(line + 0.5)) < 0.5 ? 1.0 : -1.0;
    float structure = 0.012 * effectValue * rows * step(1.5, line);
    vec3 rgb = light * (1.0 + structure) + tint + (grain + 0.03 * effectValue * (draw.zwx - 0.5)) * color.a;
    return vec4(clamp(rgb, 0.0, color.a), color.a);
}
