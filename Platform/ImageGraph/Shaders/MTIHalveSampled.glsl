// What MTIHalve does, by four samples: for GPUs.
vec4 MTIHalveSampled(vec2 uv) {
    vec2 texel = 1.0 / inputSize(0);
    vec2 place = (2.0 * vec2(pixelHere()) - 1.0) * texel;
    vec2 near = place - 0.75 * texel, far = place + 0.75 * texel;
    return 0.25 * (readInput(0, near) + readInput(0, vec2(far.x, near.y)) + readInput(0, vec2(near.x, far.y)) +
                   readInput(0, far));
}
