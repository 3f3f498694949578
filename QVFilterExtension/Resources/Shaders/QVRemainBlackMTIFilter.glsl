// The picture under a fade from black.
uniform float filterStrength;  // 0 black, 1 the picture

vec4 QVRemainBlackMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    return vec4(color.rgb * filterStrength, color.a);
}
