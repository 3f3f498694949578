// What a film projector does to a picture.
#include "particles.glsl"

// Number of the time slot that `time` (seconds) lies in at `rate` slots a second, wrapped while it is still exact.
float timeSlot(float time, float rate) { return mod(floor(time * rate), 65536.0); }

// A new state 16 times a second. x, y: where the gate holds the film, -1..1, mostly near the middle, more along the
// film than across it, and now and then a splice that throws it down. z: how far the lamp is off its mean brightness,
// -1..1.
vec3 projectorState(float time) {
    vec4 draw = particleDraw(vec2(timeSlot(time, 16.0), 0.0), 211.0) * 2.0 - 1.0;
    float splice = max(abs(draw.z) - 0.94, 0.0) * 16.0;
    vec4 centered = draw * abs(draw);
    return vec3(centered.x * 0.6, clamp(centered.y * 0.8 + splice, -1.0, 1.0), centered.w);
}

// A scratch that runs along the film: 0..1, on and off along its way. It is drawn anew `rate` times a second, in most
// but not all of these slots. `width` is half its width in widths of the frame.
float filmScratch(vec2 uv, float time, float rate, float width, float seed) {
    // Sequences without a common period spread the scratches better than draws would, at a fifth of the cost.
    vec4 draw = fract((timeSlot(time, rate) + seed) * vec4(0.618034, 0.754878, 0.569840, 0.819173));
    float tremor = fract(timeSlot(time, 16.0) * 0.618034) - 0.5;
    float bow = uv.y - draw.y;
    float x = 0.04 + 0.92 * draw.x + tremor * 0.004 + (draw.z - 0.5) * 0.02 * bow * bow;
    float along = abs(fract(uv.y * (0.6 + draw.z) + draw.y + time * 1.7) * 2.0 - 1.0);
    float line = max(1.0 - abs(uv.x - x) / width, 0.0);
    return line * clamp((along + 0.3 * draw.z) * 2.5 - 0.7, 0.0, 1.0) * step(draw.w, 0.8);
}
