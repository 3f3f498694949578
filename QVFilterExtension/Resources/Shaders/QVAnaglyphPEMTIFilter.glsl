// A stereo picture without its glasses: the red and the cyan picture part on the beat and come together again. Every
// other beat swaps the eyes. The picture is drawn larger by as much as they part, so that no border shows.
uniform float effectValue;
uniform float pulse;  // 0..1
uniform float beat;   // number of the beat

vec4 QVAnaglyphPEMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    float part = 0.05 * effectValue * pulse * min(size.x, size.y) / size.x;
    float side = 1.0 - 4.0 * fract(beat * 0.5);
    vec2 place = 0.5 + (uv - 0.5) * (1.0 - 2.0 * part);
    vec4 left = readInput(0, place + vec2(part * side, 0.12 * part));
    vec4 right = readInput(0, place - vec2(part * side, 0.12 * part));
    return vec4(left.r, right.gb, max(left.a, right.a));
}
