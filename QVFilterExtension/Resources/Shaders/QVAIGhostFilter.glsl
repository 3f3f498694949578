// A pale, cold, wavering double leaves the picture and hovers above it, with echoes on the way.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float iTime;     // place in the ghost's movement, 0..1
uniform float distance;  // of the ghost from the picture, shorter sides of the frame
uniform float presence;  // how much there is of it, 0..1

// What the double that is `part` of the way, 0..1, covers this place with.
vec4 double_(vec4 seen, vec2 place, float part) {
    // Its light, cold and lifted: a dark figure has a ghost too. It has no feet.
    float light = luma(seen.rgb);
    vec3 pale = mix(seen.rgb, light * vec3(0.78, 0.98, 1.08), 0.72) + seen.a * vec3(0.04, 0.09, 0.11);
    float fades = clamp((1.05 - place.y) * 2.6, 0.0, 1.0);
    return min(vec4(pale, seen.a), seen.a) * fades;
}

// Where a double that is `part` of the way shows what is at `uv`: up, swaying, and wavering like smoke.
vec2 risen(vec2 uv, float part, vec2 unit) {
    float late = iTime - 0.06 * part;
    float sway = 0.4 * wave(late * 2.0), heave = 0.85 + 0.15 * wave(late * 3.0 + 0.3);
    float waver = wave(uv.y * 1.7 + iTime * 4.0 + part * 0.35) + 0.5 * wave(uv.y * 4.1 - iTime * 7.0);
    vec2 moved = vec2(sway + 0.11 * waver, -heave) * (distance * part) * unit;
    return vec2(0.5, 0.7) + (uv - vec2(0.5, 0.7)) / (1.0 + 0.5 * distance * part) - moved;
}

#define DOUBLE(part, share) \
    { \
        vec2 place = mirrorAtEdges(risen(uv, part, unit)); \
        vec4 ghost = double_(readPixel(0, pixelAt(place * size)), place, part) * (presence * (share)); \
        color = ghost + color * (1.0 - 0.7 * ghost.a); \
    }

vec4 QVAIGhostFilter(vec2 uv) {
    vec2 size = inputSize(0), unit = min(size.x, size.y) / size;
    vec4 color = readHere(0);
    // What the soul has left pales and darkens.
    vec3 left = mix(color.rgb, luma(color.rgb) * vec3(0.94, 1.0, 1.04), 0.7) * 0.72;
    color.rgb = mix(color.rgb, left, presence * 0.8);
    DOUBLE(0.3, 0.2)
    DOUBLE(0.62, 0.3)
    DOUBLE(1.0, 0.62)
    return vec4(min(color.rgb, min(color.a, 1.0)), min(color.a, 1.0));
}
