// A round swelling in the middle of the picture; outside it nothing moves.
uniform float effectValue;

vec4 QVBulgeDistortionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 fromCenter = (uv - 0.5) * perShortSide;
    const float kRadius = 0.46;
    float inside = max(1.0 - dot(fromCenter, fromCenter) / (kRadius * kRadius), 0.0);
    // Flat at the rim to the second order, so that no line of the picture breaks there.
    float shrink = 1.0 - 0.72 * effectValue * inside * inside;
    return readInput(0, 0.5 + fromCenter * shrink / perShortSide);
}
