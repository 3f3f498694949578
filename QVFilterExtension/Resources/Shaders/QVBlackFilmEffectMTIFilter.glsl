// Silver film in an old projector: greys with deep blacks, grain, dark corners, a lamp that flickers, and a fine
// scratch from time to time. Colour is gone from half the strength on.
#include "color.glsl"
#include "film.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVBlackFilmEffectMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float grey = luma(straight(color));
    float curved = grey * grey * (3.0 - 2.0 * grey);
    grey = mix(grey, curved, 0.7 * effectValue);

    vec2 fromCenter = uv * 2.0 - 1.0;
    float r2 = dot(fromCenter, fromCenter) * 0.5;
    float corners = 1.0 - effectValue * r2 * (0.2 + 0.5 * r2);
    // Two sequences without a common period cost less than a draw.
    float slot = timeSlot(iTime, 16.0);
    float flicker = fract(slot * 0.618034) + fract(slot * 0.754878) - 1.0;
    float lamp = 1.0 + flicker * (0.02 + 0.08 * effectValue);

    // Grains are a 720th of the shorter side; where pixels are larger, each is a mean of several.
    float grainsPerPixel = 720.0 / min(outputSize().x, outputSize().y);
    vec4 draw = particleDraw(vec2(pixelHere()) * min(grainsPerPixel, 1.0), timeSlot(iTime, 24.0));
    float grain = (draw.x + draw.y + draw.z - 1.5) * (0.02 + 0.085 * effectValue) / max(grainsPerPixel, 1.0);
    grain *= 0.4 + 2.0 * grey * (1.0 - grey);

    float scratch = filmScratch(uv, iTime, 1.7, max(0.0009, 1.0 / outputSize().x), 5.0);
    float value = clamp(grey * corners * lamp + grain + scratch * 0.35 * effectValue, 0.0, 1.0);
    // Silver: highlights a touch warm, shadows a touch cold.
    vec3 silver = min(value * mix(vec3(0.96, 0.99, 1.04), vec3(1.0, 0.985, 0.95), value), 1.0);
    return vec4(mix(silver * color.a, color.rgb, max(1.0 - 2.0 * effectValue, 0.0)), color.a);
}
