// Y'CbCr in three planes to opaque RGB; chroma planes may be smaller, their samples centred in the area they cover.
uniform vec4 rowRed, rowGreen, rowBlue;  // matrix rows, bias last
uniform vec2 chromaScale;               // of uv, for chroma samples that reach past an odd side

vec4 MTIYUVToRGB(vec2 uv) {
    vec4 yuv = vec4(readHere(0).x, readInput(1, uv * chromaScale).x, readInput(2, uv * chromaScale).x, 1.0);
    return vec4(clamp(vec3(dot(rowRed, yuv), dot(rowGreen, yuv), dot(rowBlue, yuv)), 0.0, 1.0), 1.0);
}
