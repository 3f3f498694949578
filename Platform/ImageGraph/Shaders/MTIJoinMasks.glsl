// The red of two masks as red and green of one.
vec4 MTIJoinMasks(vec2 uv) { return vec4(readHere(0).r, readHere(1).r, 0.0, 1.0); }
