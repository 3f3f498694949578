// A sheet of paper that is crumpled on the beat and smoothed again: the picture printed on it breaks at the folds, the
// facets catch the light of a lamp on the upper left, and the print wears off along the folds. Input 1 holds the slopes
// (red, green) and the wear (blue) of the paper.
uniform float effectValue;
uniform float pulse;  // 0..1
uniform float beat;   // number of the beat; each has its own folds

vec4 QVCreasePEMTIFilter(vec2 uv) {
    vec2 size = inputSize(0);
    vec2 pixel = 1.0 / size;
    float sheet = max(size.x, size.y), crumple = pulse * (0.35 + 0.65 * effectValue);
    vec2 origin = beat * vec2(0.618034, 0.381966) + vec2(0.13, 0.57);
    vec2 here = uv * size * (0.8 * min(pixel.x, pixel.y));
    vec3 paper = (readInput(1, fract(origin + here)).rgb - 0.5) * (2.0 * crumple);

    // A slope shows the print from beside; a little of the sheet lies outside the frame and hides its border.
    vec2 place = 0.5 + (uv - 0.5) * (1.0 - 0.05 * crumple) + paper.xy * pixel * (0.048 * sheet);
    vec4 color = readInput(0, place);
    float light = dot(paper.xy, vec2(0.75, 0.85));
    // Lit facets wash the print out a little, others shade it.
    float washed = clamp(0.14 * light + 0.55 * paper.z, 0.0, 0.7);
    vec3 lit = color.rgb * ((1.0 + 0.75 * light) * (1.0 - washed)) + 0.94 * washed * color.a;
    return vec4(clamp(lit, 0.0, color.a), color.a);
}
