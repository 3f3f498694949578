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
        color.rgb += copied.rgb * tint(index); \
        color.a += copied.a; \
        white += tint(index); \
    }

vec4 QVAIRGBFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float turn = fract(changeFrequency * 0.25);
    vec2 turned = vec2(wave(turn), wave(turn - 0.25));
    vec2 reach = distanceValue * (0.08 + 0.05 * wave(changeFrequency * 0.75)) * min(size.x, size.y) / size;
    vec4 color = vec4(0.0);
    vec3 white = vec3(0.0);
    COPY(0) COPY(1) COPY(2) COPY(3) COPY(4) COPY(5) COPY(6) COPY(7)
    color.rgb /= white;
    color.a /= float(max(filterNum, 1));
    // Where only some copies lie, their light shines over what is behind.
    color.a = max(color.a, max(color.r, max(color.g, color.b)));
    return color;
}
