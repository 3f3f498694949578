// A Gaussian blur that the border pixels go on around: what it means, pixel by pixel. A plan asks for it only where the
// context draws it by code of its own, which is much faster.
uniform float deviation;  // pixels

vec4 MTIGaussianBlur(vec2 uv) {
    int reach = int(ceil(3.0 * deviation));
    float falloff = -0.5 / max(deviation * deviation, 1e-6);
    vec4 sum = vec4(0.0);
    float weights = 0.0;
    for (int y = -reach; y <= reach; ++y) {
        for (int x = -reach; x <= reach; ++x) {
            float weight = exp(float(x * x + y * y) * falloff);
            sum += weight * readPixel(0, pixelHere() + ivec2(x, y));
            weights += weight;
        }
    }
    return sum / weights;
}
