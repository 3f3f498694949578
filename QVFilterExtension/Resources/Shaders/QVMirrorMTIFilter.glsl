// Part of the frame and its reflections.

// 2: the left half, reflected. 4: the top left quarter, reflected both ways. 5: five strips across the longer side, the
// middle one as it is, each next one the reflection of its neighbour.
selector int factor;

vec4 QVMirrorMTIFilter(vec2 uv) {
    if (factor == 5) {
        vec2 strips = outputSize().x >= outputSize().y ? vec2(5.0, 0.0) : vec2(0.0, 5.0);
        vec2 strip = (uv - 0.5) * strips;
        // A triangle wave: up through the middle strip, down through the next.
        vec2 inside = abs(mod(strip - 0.5, 2.0) - 1.0) - 0.5;
        uv = mix(uv, 0.5 + inside * 0.2, step(1.0, strips));
        return readPixel(0, ivec2(uv * outputSize()));
    }
    ivec2 pixel = pixelHere(), mirrored = ivec2(outputSize()) - 1 - pixel;
    pixel.x = min(pixel.x, mirrored.x);
    if (factor == 4) pixel.y = min(pixel.y, mirrored.y);
    return readPixel(0, pixel);
}
