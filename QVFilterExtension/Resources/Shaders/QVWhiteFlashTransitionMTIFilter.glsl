// A flash: within a third of the time every channel runs into white, lights first; then the light falls off on the
// other clip, fast at the beginning, warm at its end. Inputs: outgoing, incoming.
#include "exposure.glsl"

uniform float progress;

vec4 QVWhiteFlashTransitionMTIFilter(vec2 uv) {
    const float kPeak = 0.36;
    float side = step(kPeak, progress);
    // 0 no light, 1 all white.
    float rise = progress / kPeak, fall = (1.0 - progress) / (1.0 - kPeak);
    float light = mix(rise * rise, fall * fall * (0.4 + 0.6 * fall), side);
    vec4 picture = mix(readHere(0), readHere(1), side);

    // In stops; the reds follow the light closest, so that what glows is warm.
    vec3 gain = exp2(vec3(7.2, 6.6, 5.9) * light);
    // The lens scatters some of it all over the frame, most in the middle.
    vec2 fromCenter = uv - 0.5;
    float veil = light * light * (1.25 - 1.1 * dot(fromCenter, fromCenter));
    return lightOver(overexposed(picture, gain), vec3(1.0, 0.985, 0.955) * veil + 0.06 * light * veil);
}
