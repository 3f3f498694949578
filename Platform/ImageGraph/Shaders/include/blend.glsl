// The blend modes of the W3C recommendation Compositing and Blending Level 1, each with source-over compositing of a
// premultiplied source over a premultiplied backdrop:
//   as ab B(cb, cs) + (1 - ab) S + (1 - as) D,   S = as cs, D = ab cb.
// For an opaque colour hand in vec4(color, 1.0).

// A part of the source. Bounded here too: a compiler that knows it spares bounds of what comes out.
vec4 sourceOf(vec4 pixel, float intensity) { return pixel * clamp(intensity, 0.0, 1.0); }

vec4 composite(vec4 backdrop, vec4 source, vec3 blended) {
    return vec4(blended + source.rgb * (1.0 - backdrop.a) + backdrop.rgb * (1.0 - source.a),
                source.a + backdrop.a * (1.0 - source.a));
}

// `blended` of straight colours, not yet weighted by both alphas.
vec4 compositeStraight(vec4 backdrop, vec4 source, vec3 blended) {
    return composite(backdrop, source, blended * (source.a * backdrop.a));
}

vec3 blendColorOf(vec4 pixel) { return min(pixel.rgb * (1.0 / max(pixel.a, 1e-6)), 1.0); }

vec4 blendNormal(vec4 backdrop, vec4 source) { return source + backdrop * (1.0 - source.a); }

vec4 blendMultiply(vec4 backdrop, vec4 source) { return composite(backdrop, source, backdrop.rgb * source.rgb); }

vec4 blendScreen(vec4 backdrop, vec4 source) { return backdrop + source - backdrop * source; }

vec3 hardLightOf(vec4 lower, vec4 upper) {
    vec3 dark = 2.0 * lower.rgb * upper.rgb;
    vec3 light = lower.a * upper.a - 2.0 * (lower.a - lower.rgb) * (upper.a - upper.rgb);
    return mix(light, dark, lessThanEqual(2.0 * upper.rgb, vec3(upper.a)));
}
vec4 blendHardLight(vec4 backdrop, vec4 source) { return composite(backdrop, source, hardLightOf(backdrop, source)); }
vec4 blendOverlay(vec4 backdrop, vec4 source) { return composite(backdrop, source, hardLightOf(source, backdrop)); }

vec4 blendDarken(vec4 backdrop, vec4 source) {
    return composite(backdrop, source, min(source.rgb * backdrop.a, backdrop.rgb * source.a));
}
vec4 blendLighten(vec4 backdrop, vec4 source) {
    return composite(backdrop, source, max(source.rgb * backdrop.a, backdrop.rgb * source.a));
}

vec4 blendColorDodge(vec4 backdrop, vec4 source) {
    vec3 b = blendColorOf(backdrop), s = blendColorOf(source);
    return compositeStraight(backdrop, source, min(b / max(1.0 - s, 1e-6), 1.0));
}
vec4 blendColorBurn(vec4 backdrop, vec4 source) {
    vec3 b = blendColorOf(backdrop), s = blendColorOf(source);
    return compositeStraight(backdrop, source, 1.0 - min((1.0 - b) / max(s, 1e-6), 1.0));
}

vec4 blendSoftLight(vec4 backdrop, vec4 source) {
    vec3 b = blendColorOf(backdrop), s = blendColorOf(source);
    vec3 curve = mix(sqrt(b), ((16.0 * b - 12.0) * b + 4.0) * b, lessThanEqual(b, vec3(0.25)));
    vec3 pull = mix(curve - b, b * (1.0 - b), lessThanEqual(s, vec3(0.5)));
    return compositeStraight(backdrop, source, b + (2.0 * s - 1.0) * pull);
}

vec4 blendDifference(vec4 backdrop, vec4 source) {
    return composite(backdrop, source, abs(source.rgb * backdrop.a - backdrop.rgb * source.a));
}
vec4 blendExclusion(vec4 backdrop, vec4 source) {
    return composite(backdrop, source,
                     source.rgb * backdrop.a + backdrop.rgb * source.a - 2.0 * backdrop.rgb * source.rgb);
}

// Addition and subtraction that stop at 1 and 0.
vec4 blendAdd(vec4 backdrop, vec4 source) {
    return composite(backdrop, source,
                     min(source.rgb * backdrop.a + backdrop.rgb * source.a, source.a * backdrop.a));
}
vec4 blendSubtract(vec4 backdrop, vec4 source) {
    return composite(backdrop, source, max(backdrop.rgb * source.a - source.rgb * backdrop.a, 0.0));
}

float blendLuminosityOf(vec3 color) { return dot(color, vec3(0.3, 0.59, 0.11)); }

float blendSaturationOf(vec3 color) {
    return max(color.r, max(color.g, color.b)) - min(color.r, min(color.g, color.b));
}

// `color` with another luminosity, drawn towards it where it would leave 0..1.
vec3 withLuminosity(vec3 color, float luminosity) {
    color += luminosity - blendLuminosityOf(color);
    float low = min(color.r, min(color.g, color.b)), high = max(color.r, max(color.g, color.b));
    float shrink = min(1.0, min(luminosity / max(luminosity - low, 1e-6),
                                (1.0 - luminosity) / max(high - luminosity, 1e-6)));
    return luminosity + (color - luminosity) * shrink;
}

vec3 withSaturation(vec3 color, float saturation) {
    float low = min(color.r, min(color.g, color.b));
    return (color - low) * (saturation / max(blendSaturationOf(color), 1e-6));
}

vec4 blendHue(vec4 backdrop, vec4 source) {
    vec3 b = blendColorOf(backdrop), s = blendColorOf(source);
    vec3 blended = withLuminosity(withSaturation(s, blendSaturationOf(b)), blendLuminosityOf(b));
    return compositeStraight(backdrop, source, blended);
}
vec4 blendSaturation(vec4 backdrop, vec4 source) {
    vec3 b = blendColorOf(backdrop), s = blendColorOf(source);
    vec3 blended = withLuminosity(withSaturation(b, blendSaturationOf(s)), blendLuminosityOf(b));
    return compositeStraight(backdrop, source, blended);
}
vec4 blendColor(vec4 backdrop, vec4 source) {
    vec3 b = blendColorOf(backdrop), s = blendColorOf(source);
    return compositeStraight(backdrop, source, withLuminosity(s, blendLuminosityOf(b)));
}
vec4 blendLuminosity(vec4 backdrop, vec4 source) {
    vec3 b = blendColorOf(backdrop), s = blendColorOf(source);
    return compositeStraight(backdrop, source, withLuminosity(b, blendLuminosityOf(s)));
}
