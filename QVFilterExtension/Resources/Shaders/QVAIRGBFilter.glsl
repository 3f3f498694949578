// The picture taken apart into copies of one colour each, which swing around it; together they are white.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float changeFrequency;  // time, seconds
uniform float distanceValue;    // how far the copies swing, 0..1; at 0 the picture stays as it is
selector int filterNum;         // of copies, 1 to 8

vec3 tint(int index) { return filterNum > 1 ? hueColor(float(index) / float(filterNum)) : vec3(1.0); }

// Which way from the picture copy `index` lies, when the circle of the copies has turned.
vec2 copyPlace(int index, vec2 turned) {
    float angle = 6.2831853 * float(index) / float(max(filterNum, 1));
    return vec2(cos(angle) * turned.x - sin(angle) * turned.y, cos(angle) * turned.y + sin(angle) * turned.x);
}

#define COPY(index) \
    if (filterNum > index) { \
        vec4 copied = readPixel(0, pixelAt(mirrorAtEdges(uv + copyPlace(index, turned) * reach) * size)); \
        vec3 tinted = copied.rgb * tint(index); \
        color.rgb += tinted; \
        brightest = max(brightest, tinted); \
        color.a = max(color.a, copied.a); \
        white += tint(index); \
    }

vec4 QVAIRGBFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float turn = fract(changeFrequency * 0.25);
    vec2 turned = vec2(wave(turn), wave(turn - 0.25));
    vec2 reach = distanceValue * (0.05 + 0.025 * wave(changeFrequency * 0.75)) * min(size.x, size.y) / size;
    vec4 color = vec4(0.0);
    vec3 white = vec3(0.0), brightest = vec3(0.0);
    COPY(0) COPY(1) COPY(2) COPY(3) COPY(4) COPY(5) COPY(6) COPY(7)
    // Copies shine over what is darker than they are, as neon does, and the middle of the picture keeps its drawing.
    color.rgb = mix(color.rgb / white, brightest, 0.72);
    vec4 here = readHere(0);
    color.rgb = mix(color.rgb, min(here.rgb, color.rgb), 0.45 * min(distanceValue * 4.0, 1.0));
    return color;
}
