uniform float brightness;  // -1..1, added to the colour

vec4 MTIBrightness(vec2 uv) {
    vec4 pixel = readHere(0);
    return vec4(clamp(pixel.rgb + brightness * pixel.a, 0.0, pixel.a), pixel.a);
}
