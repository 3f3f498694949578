vec4 MTIPremultiply(vec2 uv) {
    vec4 pixel = readHere(0);
    return vec4(pixel.rgb * pixel.a, pixel.a);
}
