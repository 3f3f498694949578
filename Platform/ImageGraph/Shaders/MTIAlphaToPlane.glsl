// Alpha as a plane of its own.
vec4 MTIAlphaToPlane(vec2 uv) { return vec4(readHere(0).a); }
