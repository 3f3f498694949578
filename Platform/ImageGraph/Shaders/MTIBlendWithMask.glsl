selector int component;  // of the mask: 0 red to 3 alpha; the others then cost nothing
uniform float base;      // 1 when the mask is inverted
uniform float sign;      // of the mask's value, which is added to it

// Input 0 is the background, 1 the source that lies over it, 2 the mask.
vec4 MTIBlendWithMask(vec2 uv) {
    vec4 mask = readHere(2);
    float value = component == 0 ? mask.r : component == 1 ? mask.g : component == 2 ? mask.b : mask.a;
    vec4 source = readHere(1) * clamp(base + sign * value, 0.0, 1.0);
    return source + readHere(0) * (1.0 - source.a);
}
