// Blurs along a line; where `lightsOnly` is 1, of the lights alone, which streak.
#include "color.glsl"

// What the first pass takes in of a pixel.
vec4 taken(vec4 pixel, int lightsOnly) {
    if (lightsOnly == 0) return pixel;
    float light = luma(pixel.rgb);
    return vec4(pixel.rgb * min(1.2 * light * light, 1.0), pixel.a);
}

// What the last pass gives: light that comes from elsewhere on the line is stronger than what was there before.
vec4 given(vec4 mean, vec4 here, int lightsOnly) {
    if (lightsOnly == 0) return mean;
    vec3 more = max(mean.rgb - taken(here, lightsOnly).rgb, 0.0);
    return vec4(min(mean.rgb + 1.8 * more, mean.a), mean.a);
}
