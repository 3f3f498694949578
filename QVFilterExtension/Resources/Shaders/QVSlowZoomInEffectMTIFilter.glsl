// A push into the middle of the frame, by the same factor in every equal part of the way. What leaves at the edges
// goes out of focus outwards, and the corners darken.
uniform float effectValue;  // 1: by 1.6 in all
uniform float progress;

vec4 QVSlowZoomInEffectMTIFilter(vec2 uv) {
    float shrink = exp2(-progress * log2(1.0 + 0.6 * effectValue));
    vec2 away = (uv - 0.5) * shrink;
    float near = 1.0 - shrink;
    vec2 round_ = (uv - 0.5) * 2.0;
    float edge = max(dot(round_, round_) - 0.35, 0.0) * near;
    vec2 streak = away * (0.07 * edge);
    vec4 color = 0.5 * (readInput(0, 0.5 + away - streak) + readInput(0, 0.5 + away + streak));
    color.rgb *= 1.0 - 0.75 * edge * edge / (0.3 + edge);
    return color;
}
