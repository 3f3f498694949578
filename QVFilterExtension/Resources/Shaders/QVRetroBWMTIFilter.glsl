// Silver greys in soft focus within an oval of light. Inputs: the picture, its blurred copy.
#include "color.glsl"
#include "film.glsl"
#include "grain.glsl"

uniform float iTime;
uniform float effectValue;

// What film sees that hardly sees red.
float silverOf(vec3 color) { return dot(color, vec3(0.25, 0.50, 0.25)); }

vec4 QVRetroBWMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec3 projector = projectorState(iTime);
    vec2 weave = projector.xy * vec2(0.0012, 0.003) * effectValue;
    vec4 color = readInput(0, 0.5 + (uv - 0.5) * (1.0 - 0.006 * effectValue) + weave);
    float alpha = max(color.a, 1e-6);
    float sharp = silverOf(color.rgb) / alpha, soft = silverOf(readHere(1).rgb) / alpha;

    float grey = mix(sharp, soft, 0.34);
    // Lit for the slow film, printed hard.
    grey *= 1.38 - 0.38 * grey;
    grey = mix(grey, grey * grey * (3.0 - 2.0 * grey), 0.5);
    grey += (1.0 - grey) * soft * soft * 0.32;

    // An oval of light; the lamp flickers, and its middle wanders.
    vec2 away = (uv - 0.5 - projector.yx * 0.012 * effectValue) * vec2(1.86, 1.80);
    float r2 = dot(away, away);
    float oval = 1.0 - smoothstep(0.45, 1.75, r2) * (0.55 + 0.35 * effectValue);
    grey *= oval * (1.0 + projector.z * (0.03 + 0.09 * effectValue));

    float frame = timeSlot(iTime, 18.0);
    vec2 pixel = vec2(pixelHere());
    float grain = grainAt(grainPlace(pixel, size, 2.7), frame).x;
    grey += grain * (0.05 + 0.09 * effectValue) * (0.35 + 2.2 * grey * (1.0 - grey));

    grey = clamp(grey, 0.0, 1.0);
    vec3 silver = mix(vec3(0.045, 0.040, 0.040), vec3(1.0, 0.975, 0.925), grey);
    silver.b -= 0.05 * grey * (1.0 - grey);
    vec3 look = mix(straight(color), silver, min(0.45 + 1.1 * effectValue, 1.0));
    return premultiplied(look, color.a);
}
