// The picture as it is.
vec4 MTICopy(vec2 uv) {
    return readHere(0);
}
