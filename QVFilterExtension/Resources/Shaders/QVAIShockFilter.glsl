// A punch towards the viewer: translucent copies fly out of the picture and settle back into it.
#include "borders.glsl"

uniform float amplitude;    // how hard the blow is
uniform float period;       // place in the beat, 0..1; the blow is at 0
selector int filterNumber;  // of copies, 0 to 8

// Where copy `index` shows what is at `away` from the middle; 0 is the picture itself.
vec2 flownPlace(vec2 away, float index) {
    float force = amplitude * (1.0 - period) * (1.0 - period);
    return 0.5 + away / (1.0 + force * (0.04 + 0.4 * index / float(max(filterNumber, 1))));
}

// Copies farther out are fainter; together they leave a third to a half of the picture.
vec4 withCopy(vec4 color, vec4 copied, float index) {
    float count = float(filterNumber);
    copied *= (1.0 - (index - 0.5) / count) * 0.9 * inversesqrt(count);
    return copied + color * (1.0 - copied.a);
}

#define COPY(index) \
    if (filterNumber >= index) { \
        vec4 copied = readPixel(0, pixelAt(flownPlace(away, float(index)) * inputSize(0))); \
        cover = max(cover, copied.a); \
        color = withCopy(color, copied, float(index)); \
    }

vec4 QVAIShockFilter(vec2 uv) {
    vec2 away = uv - 0.5;
    vec4 color = readInput(0, flownPlace(away, 0.0));
    float cover = color.a;
    COPY(1) COPY(2) COPY(3) COPY(4) COPY(5) COPY(6) COPY(7) COPY(8)
    // Soft edges that lie on each other stay as soft as they are.
    return color * min(cover / max(color.a, 1e-6), 1.0);
}
