// Colours are gamma encoded.

// Rec. BT.709.
float luma(vec3 color) { return dot(color, vec3(0.2126, 0.7152, 0.0722)); }

// The colour of a premultiplied pixel; black where it is transparent.
vec3 straight(vec4 pixel) { return pixel.rgb * (1.0 / max(pixel.a, 1e-6)); }

vec4 premultiplied(vec3 color, float alpha) { return vec4(color * alpha, alpha); }

// A pure hue, 0..1 once around: one component 1, one 0.
vec3 hueColor(float hue) {
    return clamp(abs(fract(hue + vec3(0.0, 2.0, 1.0) / 3.0) * 6.0 - 3.0) - 1.0, 0.0, 1.0);
}
