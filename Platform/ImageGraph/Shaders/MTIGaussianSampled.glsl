// One direction of a Gaussian, by samples that each weigh two neighbouring pixels: for GPUs.
selector int pairs;     // samples on each side, 1 to 10
selector int vertical;  // 0 across, 1 down
uniform float center;   // weight of the pixel itself
// Weights and distances in pixels of samples 0 and 1, 2 and 3, …
uniform vec4 samples0, samples1, samples2, samples3, samples4;

#define SAMPLES(i, distance, weight) \
    if (pairs > i) sum += weight * (readInput(0, uv - distance * texel) + readInput(0, uv + distance * texel))

vec4 MTIGaussianSampled(vec2 uv) {
    vec2 texel = (vertical != 0 ? vec2(0.0, 1.0) : vec2(1.0, 0.0)) / outputSize();
    vec4 sum = center * readPixel(0, pixelHere());
    SAMPLES(0, samples0.y, samples0.x);
    SAMPLES(1, samples0.w, samples0.z);
    SAMPLES(2, samples1.y, samples1.x);
    SAMPLES(3, samples1.w, samples1.z);
    SAMPLES(4, samples2.y, samples2.x);
    SAMPLES(5, samples2.w, samples2.z);
    SAMPLES(6, samples3.y, samples3.x);
    SAMPLES(7, samples3.w, samples3.z);
    SAMPLES(8, samples4.y, samples4.x);
    SAMPLES(9, samples4.w, samples4.z);
    return sum;
}
