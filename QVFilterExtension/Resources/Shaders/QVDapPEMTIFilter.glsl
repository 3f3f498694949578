// A tap from below on the beat: the picture hops off a polished floor, gives way softly where it lands, and hops once
// more. Under it the floor mirrors it, darker the higher it flies.
#include "borders.glsl"
#include "motion.glsl"

uniform float effectValue;  // 1: by a quarter of the frame's height
uniform float progress;     // 0..1 through the beat, 0 at rest

// Height 0..1 of a hop from `start` to `end`.
float hop(float at, float start, float end) {
    float x = clamp((at - start) / (end - start), 0.0, 1.0);
    return 4.0 * x * (1.0 - x);
}
float heightAt(float at) { return 0.27 * effectValue * max(hop(at, 0.0, 0.42), 0.35 * hop(at, 0.52, 0.8)); }

// How far a landing at `moment` gives way: 0..1, soon there and gone after `lasts`.
float landing(float moment, float lasts) {
    float at = clamp((progress - moment) / lasts, 0.0, 1.0);
    float left = 1.0 - at;
    return 6.75 * at * left * left;
}

vec4 tap(vec2 place) {
    vec2 size = inputSize(0);
    return readPixel(0, pixelAt(vec2(place.x, size.y - abs(size.y - abs(place.y)))));
}

vec4 QVDapPEMTIFilter(vec2 uv) {
    float height = heightAt(progress);
    float squash = effectValue * max(landing(0.42, 0.22), 0.45 * landing(0.8, 0.2));
    float smear = height - heightAt(max(progress - 0.03, 0.0));
    // It stands on the frame's lower edge. What gives way stays within the frame: its lower part is pressed flat.
    float y = uv.y + height;
    float inFrame = min(y, 1.0);
    y += 0.42 * squash * inFrame * (inFrame - 1.0);
    float x = 0.5 + (uv.x - 0.5) / (1.0 + 0.3 * height + 0.22 * squash * uv.y);
    vec2 size = inputSize(0), way = vec2(0.0, -smear) * size;
    vec4 color = MEAN_ALONG(tap, vec2(x, y) * size + 0.5 * way, way, tapShift(pixelHere()));
    // Pixels of the way below the picture's edge, and how deep that is.
    float below = clamp((y - 1.0) * size.y + 0.5, 0.0, 1.0), deep = max(y - 1.0, 0.0);
    color.rgb *= 1.0 - below * clamp(0.5 + 2.2 * deep - 0.15 * height, 0.0, 0.9);
    return color;
}
