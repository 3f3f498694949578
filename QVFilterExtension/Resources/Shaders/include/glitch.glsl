// A broken digital signal. It changes in steps, about fourteen a second, and rests in the first and the last one.
#include "borders.glsl"
#include "particles.glsl"

struct Burst {
    float number;    // of the step, for random draws; transitions that start at other times have other numbers
    float progress;  // of the transition, in the middle of the step
    float strength;  // 0..1, most in the middle of the transition; some steps are calmer than others
};

// `start` and `duration` in seconds.
Burst burstAt(float progress, float start, float duration) {
    float count = clamp(floor(duration * 14.0), 7.0, 4096.0);
    float index = clamp(floor(progress * count), 0.0, count - 1.0);
    float middle = (index + 0.5) / count;
    float number = index + mod(floor(start * 14.0), 16384.0) * 4.0;
    float fromMiddle = abs(middle * 2.0 - 1.0);
    float rests = step(abs(index * 2.0 - count + 1.0), count - 2.0);
    float draw = particleDraw(vec2(number, 0.0), 3.0).x;
    return Burst(number, middle, rests * (1.0 - fromMiddle * fromMiddle) * (0.4 + 0.6 * draw));
}

// Pixel of an input of `size` pixels; what leaves the frame on one side comes in on the other.
ivec2 wrappedPixel(vec2 place, vec2 size) { return pixelAt(fract(place) * size); }
