// What MTIReduce does, by samples that each weigh four pixels: for GPUs.
selector int factor;  // pixels a side that one stands for: 2, 4, 8, 16

vec4 pairOfRow(vec2 middle, float distance) {
    vec2 away = vec2(distance, 0.0) / inputSize(0);
    return readInput(0, middle - away) + readInput(0, middle + away);
}

vec4 reducedRow(vec2 middle) {
    vec4 sum = vec4(0.0);
    for (int i = 0; i < factor / 2; ++i) {
        // The weights 4 i + 1 and 4 i + 3, from the outside, as one sample between the two.
        float weight = float(8 * i + 4), inner = float(4 * i + 3) / weight;
        sum += weight * pairOfRow(middle, float(factor - 2 * i) - 0.5 - inner);
    }
    return sum;
}

vec4 MTIReduceSampled(vec2 uv) {
    vec2 middle = (float(factor) * vec2(pixelHere()) - float(factor - 1)) / inputSize(0);
    vec4 sum = vec4(0.0);
    for (int i = 0; i < factor / 2; ++i) {
        float weight = float(8 * i + 4), inner = float(4 * i + 3) / weight;
        vec2 away = vec2(0.0, float(factor - 2 * i) - 0.5 - inner) / inputSize(0);
        sum += weight * (reducedRow(middle - away) + reducedRow(middle + away));
    }
    float weights = float(2 * factor * factor);
    return sum / (weights * weights);
}
