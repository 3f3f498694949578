// The whole picture on a convex sheet of glass: the middle comes closer, the corners stay in theirs, and the glass
// mirrors a bright window from the upper left and darkens where it curves away.
uniform float effectValue;

vec4 QVConvexMTIFilter(vec2 uv) {
    vec2 fromCenter = uv * 2.0 - 1.0;
    vec2 square = fromCenter * fromCenter;
    float bend = effectValue * (1.0 - 0.36 * effectValue);
    // Each axis is bent by the other too: edges bow outwards, and a point of the rim stays on the rim.
    vec2 from = fromCenter * (1.0 - bend * (1.0 - square) * (1.0 - 0.35 * square.yx));
    vec4 color = readInput(0, from * 0.5 + 0.5);
    // How steep the glass is, 0..1: most in the corners, but all along the rim.
    vec2 steep = square * square;
    float away = steep.x + steep.y - steep.x * steep.y;
    color.rgb *= 1.0 - effectValue * away * (0.3 + 0.45 * away);
    // The window is bowed as the rim is: a lens of light between two circles.
    vec2 glint = (fromCenter - vec2(-0.5, -0.56)) * vec2(1.6, 2.3);
    float bowed = glint.x + glint.y + 0.5 * (glint.x - glint.y) * (glint.x - glint.y);
    float light = max(1.0 - 4.0 * bowed * bowed, 0.0) * max(1.0 - 0.6 * dot(glint, glint), 0.0);
    color.rgb += (0.34 * effectValue * light) * (color.a - color.rgb);
    return color;
}
