// The picture within a circle, its blurred copy outside. Inputs: the picture, the copy.
uniform float excludeCircleRadius;  // where the blur is full, in 5/8 of the frame's diagonal
uniform vec2 excludeCirclePoint;    // the circle's middle
uniform float excludeBlurSize;      // over which the blur sets in, in the same unit

vec4 QVSelectiveBlurMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float away = length((uv - excludeCirclePoint) * size) * 1.6 * inversesqrt(dot(size, size));
    float blur = smoothstep(excludeCircleRadius - excludeBlurSize, excludeCircleRadius, away);
    return mix(readHere(0), readHere(1), blur);
}
