// Film exposed longer or shorter.
#include "exposure.glsl"

uniform float exposureValue;  // stops

vec4 QVFilmTransitionExposureFilter(vec2 uv) {
    vec4 color = readHere(0);
    float gain = exp2(exposureValue * (1.0 / 2.2));  // of gamma encoded values
    return exposureValue > 0.0 ? overexposed(color, vec3(gain)) : vec4(color.rgb * gain, color.a);
}
