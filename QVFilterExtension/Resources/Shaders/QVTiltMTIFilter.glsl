// The picture within a band, its blurred copy above and below. Inputs: the picture, the copy.
uniform float topFocusLevel;     // the band's upper edge, 0 the top of the frame
uniform float bottomFocusLevel;  // its lower edge, 1 the bottom of the frame
uniform float focusFallOffRate;  // over which the blur sets in, in heights of the frame

vec4 QVTiltMTIFilter(vec2 uv) {
    float outside = max(topFocusLevel - uv.y, uv.y - bottomFocusLevel);
    return mix(readHere(0), readHere(1), smoothstep(0.0, focusFallOffRate, outside));
}
