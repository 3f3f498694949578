// A viscous picture on its way to the right: it is drawn out at the left, thick streams run ahead of the others, and
// the colours part along the way.
#include "frame.glsl"
#include "liquid.glsl"
#include "motion.glsl"
#include "wave.glsl"

uniform float progress;     // linear
uniform float RGBSeperate;  // 0 to 1 in the middle and back

vec4 sourceAt(vec2 place) { return readInput(0, mirrorAtEdges(place)); }

vec4 QVLiquidStretchFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 place = uv * perShortSide;
    vec4 swing = wave(vec4(0.9, 1.7, 3.1, 0.8) * place.yyyx + vec4(0.1, 0.45, 0.8, 0.0) +
                      vec4(0.3, -0.5, 0.9, -0.8) * progress);
    float stream = dot(swing.xyz, vec3(0.5, 0.3, 0.2));
    // 0 at both sides, so that the picture meets its surroundings where it did.
    float slack = uv.x * (1.0 - uv.x);
    float pull = RGBSeperate * (0.85 * slack + (0.10 + 0.30 * slack) * stream);
    vec2 from = uv - vec2(pull, RGBSeperate * 0.03 * swing.w * stream / perShortSide.y);
    vec2 parted = vec2(RGBSeperate * (0.035 + 0.02 * stream), 0.0);
    return SPECTRUM(sourceAt, from + parted * (0.3 * tapShift(pixelHere())), parted);
}
