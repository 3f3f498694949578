// Film grain about middle grey, as a translucent layer: a piece of grain, input 1, repeated. Its copies are shifted
// against each other, and where they meet nothing shows, since grains are hardly larger than pixels.
uniform int shiftX, shiftY;  // of this frame, pixels
uniform int turnX, turnY;    // 1 or -1: mirrored
uniform float opacity;       // of the layer, 0..1

const int kBits = 9;  // the piece's side is two to this power

vec4 QVFilmNoisyMTIFilter(vec2 uv) {
    ivec2 here = pixelHere() * ivec2(turnX, turnY) + ivec2(shiftX, shiftY);
    here += ivec2((here.y >> kBits) * 173, (here.x >> kBits) * 311);
    float alpha = readHere(0).a * opacity;
    return vec4(readPixel(1, here & ((1 << kBits) - 1)).rgb * alpha, alpha);
}
