selector int component;  // of the mask: 0 red, 1 green, 2 blue, 3 alpha
selector int inverted;   // 1: the source is seen where the mask is black

// Input 0 is the background, 1 the source that lies over it, 2 the mask.
vec4 MTIBlendWithMask(vec2 uv) {
    vec4 mask = readHere(2);
    float seen = clamp(component == 0 ? mask.r : component == 1 ? mask.g : component == 2 ? mask.b : mask.a, 0.0, 1.0);
    vec4 source = readHere(1) * (inverted == 1 ? 1.0 - seen : seen);
    return source + readHere(0) * (1.0 - source.a);
}
