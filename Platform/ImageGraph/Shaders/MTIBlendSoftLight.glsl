#include "blend.glsl"

uniform float intensity;  // 0..1, of the source

// Input 0 is the backdrop, input 1 the source.
vec4 MTIBlendSoftLight(vec2 uv) {
    return blendSoftLight(readHere(0), sourceOf(readHere(1), intensity));
}
