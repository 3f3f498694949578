// Draws a colour towards the grey of its luma (0..white) just so far that no component is below 0 or above white: hue
// and luma stay.
vec3 fitGamut(vec3 color, float luma, float white) {
    float low = min(color.r, min(color.g, color.b)), high = max(color.r, max(color.g, color.b));
    float shrink = min(1.0, min(luma / max(luma - low, 1e-6), (white - luma) / max(high - luma, 1e-6)));
    return luma + (color - luma) * shrink;
}
