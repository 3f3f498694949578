// A television that has lost the vertical hold: the picture stands in repeated strips that roll upwards without end,
// with the dark blanking bar between them and lines torn sideways at it. More strength, more strips and faster.
#include "borders.glsl"
#include "noise.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVRepeatScrollIFilter(vec2 uv) {
    float strips = 1.0 + floor(effectValue * 2.999);
    float roll = uv.y * strips + iTime * (0.25 + 0.9 * effectValue);
    float inStrip = fract(roll);
    // A strip shows the middle of the picture, squeezed by half of what would show it all.
    float shown = 0.5 + 0.5 / strips;
    float toBar = min(inStrip, 1.0 - inStrip);  // strips from the bar

    float height = outputSize().y;
    float line = floor(offBorders(uv).y * min(height, 480.0));
    float tear = max(1.0 - toBar * 7.0, 0.0);
    float jitter = randomOf(vec2(line, mod(floor(iTime * 30.0), 65536.0))) - 0.5;
    float shear = (tear * tear * (0.09 + 0.07 * jitter) + jitter * 0.004) * (0.3 + 0.7 * effectValue);
    vec2 from = vec2(uv.x + shear, 0.5 + (inStrip - 0.5) * shown);
    from.x = 1.0 - abs(1.0 - abs(from.x));
    vec4 color = readInput(0, from);

    float soft = max(0.004, strips / height);
    float bar = clamp((0.022 - toBar) / soft + 0.5, 0.0, 1.0);
    float scan = 1.0 - 0.12 * effectValue * abs(fract(uv.y * min(height * 0.5, 240.0)) * 2.0 - 1.0);
    return vec4(color.rgb * scan * (1.0 - 0.93 * bar), color.a);
}
