// Adds what input 0 has and input 1, its blur, has not.
uniform float intensity;  // factor of the difference

vec4 QVUnSharpMaskMTIFilter(vec2 uv) {
    vec4 pixel = readHere(0);
    vec3 detail = pixel.rgb - readHere(1).rgb;
    return vec4(clamp(pixel.rgb + detail * intensity, 0.0, pixel.a), pixel.a);
}
