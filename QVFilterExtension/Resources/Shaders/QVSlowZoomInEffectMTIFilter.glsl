// A push into the middle of the frame, by the same factor in every equal part of the way.
uniform float effectValue;  // 1: by 1.6 in all
uniform float progress;

vec4 QVSlowZoomInEffectMTIFilter(vec2 uv) {
    float shrink = exp2(-progress * log2(1.0 + 0.6 * effectValue));
    return readInput(0, 0.5 + (uv - 0.5) * shrink);
}
