// A pull back from the middle of the frame to all of it, by the same factor in every equal part of the way.
uniform float effectValue;  // 1: from 1.6
uniform float progress;

vec4 QVSlowZoomOutEffectMTIFilter(vec2 uv) {
    float shrink = exp2((progress - 1.0) * log2(1.0 + 0.6 * effectValue));
    return readInput(0, 0.5 + (uv - 0.5) * shrink);
}
