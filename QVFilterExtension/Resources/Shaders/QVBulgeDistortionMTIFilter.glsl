// A round swelling in the middle of the picture, lit from the upper left; outside it nothing moves.
uniform float effectValue;

vec4 QVBulgeDistortionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 perShortSide = size / min(size.x, size.y);
    vec2 fromCenter = (uv - 0.5) * perShortSide;
    const float kRadius = 0.56;
    float inside = max(1.0 - dot(fromCenter, fromCenter) / (kRadius * kRadius), 0.0);
    float height = effectValue * (1.55 - 0.7 * effectValue);
    // Flat at the rim to the second order, so that no line of the picture breaks there.
    float shrink = 1.0 - height * inside * inside;
    vec4 color = readInput(0, 0.5 + fromCenter * shrink / perShortSide);
    // The slope of the swelling, towards the lamp.
    float light = height * inside * dot(fromCenter, vec2(-0.55, -0.85));
    color.rgb += light * (light > 0.0 ? color.a - color.rgb : 1.5 * color.rgb);
    return color;
}
