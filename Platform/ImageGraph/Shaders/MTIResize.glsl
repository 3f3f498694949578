// The input at another size. A pixel that covers many is the mean of across x down bilinear samples.
selector int across;
selector int down;

vec4 MTIResize(vec2 uv) {
    if (across * down <= 1) return readInput(0, uv);
    vec2 spacing = 1.0 / (outputSize() * vec2(across, down));
    vec2 first = uv - 0.5 / outputSize() + 0.5 * spacing;
    vec4 sum = vec4(0.0);
    for (int y = 0; y < down; ++y) {
        for (int x = 0; x < across; ++x) sum += readInput(0, first + vec2(x, y) * spacing);
    }
    return sum / float(across * down);
}
