// The picture under a flood of light: the lights burn out first, then everything turns white.
uniform float filterStrength;  // 0 white, 1 the picture

vec4 QVRemainWhiteMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float flood = 1.0 - filterStrength;
    vec3 burnt = min(color.rgb * (1.0 + 1.6 * flood), color.a);
    return vec4(mix(burnt, vec3(color.a), flood * flood * (1.5 - 0.5 * flood)), color.a);
}
