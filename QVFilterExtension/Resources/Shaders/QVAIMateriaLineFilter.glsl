// A material where a layer is opaque. Inputs: material, layer.

vec4 QVAIMateriaLineFilter(vec2 uv) { return readHere(0) * readHere(1).a; }
