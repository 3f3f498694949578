uniform vec4 component;  // weights of the mask's components
uniform float base;      // added to them: 1 when the mask is inverted

// Input 0 is the background, 1 the source that lies over it, 2 the mask.
vec4 MTIBlendWithMask(vec2 uv) {
    vec4 source = readHere(1) * clamp(dot(readHere(2), component) + base, 0.0, 1.0);
    return source + readHere(0) * (1.0 - source.a);
}
