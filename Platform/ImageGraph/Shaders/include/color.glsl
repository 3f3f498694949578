// Colour models. Colours are gamma encoded; hue, saturation and the rest are 0..1, hue in turns.

// Rec. BT.709.
float luma(vec3 color) { return dot(color, vec3(0.2126, 0.7152, 0.0722)); }

// The colour of a premultiplied pixel; black where it is transparent.
vec3 straight(vec4 pixel) { return pixel.rgb / max(pixel.a, 1e-6); }

vec4 premultiplied(vec3 color, float alpha) { return vec4(color * alpha, alpha); }

// x hue, y saturation, z value. A grey has hue 0.
vec3 rgbToHsv(vec3 c) {
    float value = max(c.r, max(c.g, c.b));
    float chroma = value - min(c.r, min(c.g, c.b));
    vec3 d = vec3(c.g - c.b, c.b - c.r, c.r - c.g) / max(chroma, 1e-6);
    float sextant = value == c.r ? d.x : value == c.g ? d.y + 2.0 : d.z + 4.0;
    return vec3(fract(sextant / 6.0), chroma / max(value, 1e-6), value);
}

// A pure hue: one component 1, one 0.
vec3 hueColor(float hue) {
    return clamp(abs(fract(hue + vec3(0.0, 2.0, 1.0) / 3.0) * 6.0 - 3.0) - 1.0, 0.0, 1.0);
}

vec3 hsvToRgb(vec3 c) { return c.z * mix(vec3(1.0), hueColor(c.x), c.y); }

// x hue, y saturation, z lightness.
vec3 rgbToHsl(vec3 c) {
    vec3 hsv = rgbToHsv(c);
    float chroma = hsv.y * hsv.z;
    float lightness = hsv.z - 0.5 * chroma;
    return vec3(hsv.x, chroma / max(1.0 - abs(2.0 * lightness - 1.0), 1e-6), lightness);
}

vec3 hslToRgb(vec3 c) {
    float chroma = (1.0 - abs(2.0 * c.z - 1.0)) * c.y;
    return (hueColor(c.x) - 0.5) * chroma + c.z;
}
