// The picture at another exposure, and the line of the slider that sets it. Inputs: the picture, its blurred copy, the
// line on a transparent layer.
#include "color.glsl"
#include "exposure.glsl"

uniform float exposure;      // stops
uniform float lineOpacity;   // 0..1
uniform float topCenter;     // the gap in the line, heights of the frame
uniform float buttomCenter;

vec4 QVCameraLightFilter(vec2 uv) {
    vec4 color = readHere(0), soft = readHere(1);
    float up = max(exposure, 0.0), down = max(-exposure, 0.0);
    // Light is warm when there is much of it; shadows are a little cold.
    vec3 gain = exp2(0.9 * up * vec3(1.06, 1.0, 0.92));
    vec4 lit = overexposed(color, gain);
    vec3 spill = soft.rgb * soft.rgb * min(0.42 * up, 0.8) * vec3(1.0, 0.95, 0.84);
    lit = lightOver(lit, spill);
    // Toe: the shadows close before the lights do.
    float grey = luma(straight(lit));
    lit.rgb *= exp2(-down * (1.25 - 0.5 * grey) * vec3(1.04, 1.0, 0.96));

    float outside = 1.0 - smoothstep(topCenter - 0.006, topCenter, uv.y) +
                    smoothstep(buttomCenter, buttomCenter + 0.006, uv.y);
    vec4 line = readHere(2) * (lineOpacity * clamp(outside, 0.0, 1.0));
    return line + lit * (1.0 - line.a);
}
