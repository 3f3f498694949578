// A sensor pushed to its limit.
// Inputs: frame, noise (256×256: red a grain, green and blue blotches; repeats).
#include "color.glsl"
#include "frame.glsl"
#include "particles.glsl"

uniform float effectValue;
uniform float draw;  // number of the noise's place

vec4 noiseAt(vec2 place) { return readPixel(1, ivec2(place) & 255) - 0.5; }

vec4 QVNoiseMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    vec3 rgb = straight(color);
    vec2 place = vec2(pixelHere());
    float unit = unitPixels(outputSize());
    vec4 whole = floor(particleDraw(vec2(draw, 0.0), 51.0) * 255.0);
    float grain = noiseAt(place / max(2.0 * unit, 1.0) + whole.xy).r;
    vec2 blotch = noiseAt(place / max(1.6 * unit, 1.0) + whole.zw).gb;
    float band = particleDraw(vec2(floor(place.y / max(24.0 * unit, 1.0)), draw), 52.0).x - 0.5;

    float grey = luma(rgb);
    float shadow = mix(1.0, 0.25, grey);
    vec3 noise = vec3(grain * 0.52 * shadow);
    noise += vec3(blotch.x, -0.5 * (blotch.x + blotch.y), blotch.y) * (0.62 * shadow * (1.0 - 0.6 * grey));
    rgb = mix(rgb, vec3(grey), 0.3 * effectValue);
    rgb = rgb * (1.0 - 0.09 * effectValue) + vec3(0.085, 0.08, 0.1) * effectValue;
    rgb += (noise + 0.1 * band) * effectValue;
    return premultiplied(clamp(rgb, 0.0, 1.0), color.a);
}
