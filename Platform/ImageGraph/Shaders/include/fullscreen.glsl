// A triangle over the whole target. Hands WORDS vectors of pushed words on to the fragment stage, where they are
// cheaper to read than push constants.
layout(push_constant) uniform Pushed { uvec4 words[WORDS]; } pushed;

layout(location = 0) flat out uvec4 words0;
#if WORDS > 1
layout(location = 1) flat out uvec4 words1;
#endif
#if WORDS > 2
layout(location = 2) flat out uvec4 words2;
#endif
#if WORDS > 3
layout(location = 3) flat out uvec4 words3;
#endif
#if WORDS > 4
layout(location = 4) flat out uvec4 words4;
#endif
#if WORDS > 5
layout(location = 5) flat out uvec4 words5;
#endif
#if WORDS > 6
layout(location = 6) flat out uvec4 words6;
#endif
#if WORDS > 7
layout(location = 7) flat out uvec4 words7;
#endif

void main() {
    vec2 corner = vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1);
    gl_Position = vec4(corner * 4.0 - 1.0, 0.0, 1.0);
    words0 = pushed.words[0];
#if WORDS > 1
    words1 = pushed.words[1];
#endif
#if WORDS > 2
    words2 = pushed.words[2];
#endif
#if WORDS > 3
    words3 = pushed.words[3];
#endif
#if WORDS > 4
    words4 = pushed.words[4];
#endif
#if WORDS > 5
    words5 = pushed.words[5];
#endif
#if WORDS > 6
    words6 = pushed.words[6];
#endif
#if WORDS > 7
    words7 = pushed.words[7];
#endif
}
