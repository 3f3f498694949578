// Input 0, a clip frame, cut to the shape that input 1's alpha draws.
vec4 QVPaperVideoBlendFilter(vec2 uv) {
    return readHere(0) * readHere(1).a;
}
