// One direction of a Gaussian, by fetched pixels: for processors.
selector int radius;    // taps on each side, 1 to 20
selector int vertical;  // 0 across, 1 down
uniform vec4 weights0, weights1, weights2, weights3, weights4, weights5;  // of taps 0, 1, 2, … of a side

#define TAPS(i, weight) \
    if (radius >= i) sum += weight * (readPixel(0, place - i * direction) + readPixel(0, place + i * direction))

vec4 MTIGaussianFetched(vec2 uv) {
    ivec2 place = pixelHere();
    ivec2 direction = vertical != 0 ? ivec2(0, 1) : ivec2(1, 0);
    vec4 sum = weights0.x * readPixel(0, place);
    TAPS(1, weights0.y);
    TAPS(2, weights0.z);
    TAPS(3, weights0.w);
    TAPS(4, weights1.x);
    TAPS(5, weights1.y);
    TAPS(6, weights1.z);
    TAPS(7, weights1.w);
    TAPS(8, weights2.x);
    TAPS(9, weights2.y);
    TAPS(10, weights2.z);
    TAPS(11, weights2.w);
    TAPS(12, weights3.x);
    TAPS(13, weights3.y);
    TAPS(14, weights3.z);
    TAPS(15, weights3.w);
    TAPS(16, weights4.x);
    TAPS(17, weights4.y);
    TAPS(18, weights4.z);
    TAPS(19, weights4.w);
    TAPS(20, weights5.x);
    return sum;
}
