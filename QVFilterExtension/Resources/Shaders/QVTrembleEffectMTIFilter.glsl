// A camera in a nervous hand: it never rests, jerks now and then, and smears the picture along its motion. The
// picture is drawn larger by as much as the hand can move, so that its border is never seen.
#include "borders.glsl"
#include "motion.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

// Place of the hand at a time, about -1..1 on each axis: sway, tremor, and jerks that spring back.
vec2 handAt(float time) {
    vec2 sway = wave(time * vec2(1.31, 1.73) + vec2(0.1, 0.6));
    vec2 tremor = wave(time * vec2(6.1, 7.3) + vec2(0.4, 0.0));
    vec2 quick = wave(time * vec2(11.9, 10.3) + vec2(0.0, 0.7));
    float jerk = fract(time * 0.8);
    float spring = max(1.0 - jerk * 2.5, 0.0);
    spring *= spring;
    return sway * 0.4 + tremor * (0.2 + 0.35 * spring) + quick * (0.1 + 0.2 * spring);
}

vec4 tap(vec2 place) { return readPixel(0, pixelAt(place)); }

vec4 QVTrembleEffectMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 reach = effectValue * (0.11 - 0.04 * effectValue) * min(size.x, size.y) / size;
    vec2 hand = handAt(iTime);
    const float kShutter = 0.025;  // seconds
    vec2 smear = (hand - handAt(iTime - kShutter)) * reach * size;
    float roll = 0.03 * effectValue * wave(iTime * 2.9);

    vec2 fromCenter = (uv - 0.5) * (1.0 - 2.4 * reach);
    vec2 aspect = size / size.yx;
    vec2 from = (0.5 + fromCenter + roll * fromCenter.yx * vec2(-aspect.y, aspect.x) + hand * reach) * size;
    return MEAN_ALONG(tap, from - 0.5 * smear, smear, tapShift(pixelHere()));
}
