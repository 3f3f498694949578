// A part of the size, each pixel the mean of twice as many a side as it stands for, with the weights 1 3 5 … 5 3 1, and
// with pixels more on every side: the borders of the result then continue exactly what the input's borders do. By
// fetched pixels, for processors.
selector int factor;  // pixels a side that one stands for: 2, 4, 8, 16

vec4 pairOfRow(ivec2 first, int i) {
    return float(2 * i + 1) * (readPixel(0, first + ivec2(i, 0)) + readPixel(0, first + ivec2(2 * factor - 1 - i, 0)));
}

vec4 reducedRow(ivec2 first) {
    vec4 sum = pairOfRow(first, 0) + pairOfRow(first, 1);
    if (factor >= 4) sum += pairOfRow(first, 2) + pairOfRow(first, 3);
    if (factor >= 8) {
        sum += pairOfRow(first, 4) + pairOfRow(first, 5);
        sum += pairOfRow(first, 6) + pairOfRow(first, 7);
    }
    if (factor >= 16) {
        for (int i = 8; i < 16; i += 2) sum += pairOfRow(first, i) + pairOfRow(first, i + 1);
    }
    return sum;
}

vec4 MTIReduce(vec2 uv) {
    ivec2 first = factor * pixelHere() - (2 * factor - 1);
    vec4 sum = vec4(0.0);
    for (int i = 0; i < factor; ++i) {
        vec4 rows = reducedRow(first + ivec2(0, i)) + reducedRow(first + ivec2(0, 2 * factor - 1 - i));
        sum += float(2 * i + 1) * rows;
    }
    float weights = float(2 * factor * factor);
    return sum / (weights * weights);
}
