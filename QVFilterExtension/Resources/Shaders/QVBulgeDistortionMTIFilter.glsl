// A round swelling of glass in the middle of the picture, lit from the upper left; outside it nothing moves.
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
    // The slope of the swelling towards the lamp, its gloss, and the shadow that gathers around it.
    float rim = inside * (1.0 - inside);
    float light = height * inside * dot(fromCenter, vec2(-0.75, -1.15));
    vec2 gloss = (fromCenter - vec2(-0.2, -0.27)) * vec2(1.0, 1.5);
    light += height * 0.75 * max(1.0 - dot(gloss, gloss) * 34.0, 0.0) * inside;
    light -= height * 0.9 * rim * rim * (1.0 + dot(fromCenter, vec2(0.8, 1.2)));
    color.rgb += light * (light > 0.0 ? color.a - color.rgb : 1.5 * color.rgb);
    return color;
}
