#include "blend.glsl"

uniform float intensity;  // 0..1, of the source

// Input 0 is the backdrop, input 1 the source.
vec4 MTIBlendColor(vec2 uv) {
    return blendColor(readHere(0), sourceOf(readHere(1), intensity));
}
