// The whole picture on a convex sheet of glass: the middle comes closer, the corners stay in theirs, and the glass
// takes a highlight from the upper left and darkens where it curves away.
uniform float effectValue;

vec4 QVConvexMTIFilter(vec2 uv) {
    vec2 fromCenter = uv * 2.0 - 1.0;
    float r2 = 0.5 * dot(fromCenter, fromCenter);  // 1 in the corners
    float bend = 0.54 * effectValue;
    // Each axis is bent by the other too: edges bow outwards, and a point of the rim stays on the rim.
    vec2 other = fromCenter.yx * fromCenter.yx;
    vec2 from = fromCenter * (1.0 - bend * (1.0 - fromCenter * fromCenter) * (1.0 - 0.35 * other));
    vec4 color = readInput(0, from * 0.5 + 0.5);
    float shade = 1.0 - effectValue * 0.55 * r2 * r2;
    vec2 glint = (fromCenter - vec2(-0.42, -0.5)) * vec2(1.5, 2.1);
    float light = max(1.0 - dot(glint, glint), 0.0);
    light *= light * 0.22 * effectValue;
    color.rgb *= shade;
    color.rgb += light * (color.a - color.rgb);
    return color;
}
