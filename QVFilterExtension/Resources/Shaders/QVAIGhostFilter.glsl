// A pale, cold, wavering double leaves the picture and hovers above it, with echoes on the way.
#include "borders.glsl"
#include "color.glsl"
#include "frame.glsl"
#include "wave.glsl"

uniform float iTime;     // place in the ghost's movement, 0..1
uniform float distance;  // of the ghost from the picture, shorter sides of the frame
uniform float presence;  // how much there is of it, 0..1
uniform float inFront;   // share of its light that also falls in front of the picture, 0..1
// Of the doubles, nearest first: where on the way to the ghost they are, 0..1, and their places to the right and upwards,
// distances.
uniform vec3 parts, sways, heaves;

// What a double shows: its light, cold and lifted, since a dark figure has a ghost too. It has no feet.
vec4 pale(vec4 seen, vec2 place) {
    float light = luma(seen.rgb);
    vec3 cold = mix(seen.rgb, light * vec3(0.92, 1.16, 1.26), 0.78) + seen.a * vec3(0.1, 0.17, 0.2);
    float fades = clamp((1.05 - place.y) * 2.6, 0.0, 1.0);
    return min(vec4(cold, seen.a), seen.a) * fades;
}

// Where a double that is `part` of the way shows what is at `uv`: up, swaying, and wavering like smoke.
vec2 risen(vec2 uv, float part, float sway, float heave, vec2 unit) {
    float waver = wave(uv.y * 1.7 + iTime * 4.0 + part * 0.35) + 0.5 * wave(uv.y * 4.1 - iTime * 7.0);
    vec2 moved = vec2(sway + 0.11 * waver * part, -heave) * (distance * unit);
    return vec2(0.5, 0.7) + (uv - vec2(0.5, 0.7)) * (1.0 / (1.0 + 0.5 * distance * part)) - moved;
}

#define DOUBLE(index, share) \
    { \
        vec2 place = mirrorAtEdges(risen(uv, parts.index, sways.index, heaves.index, unit)); \
        vec4 seen = pale(readPixel(0, pixelAt(place * size)), place) * (share); \
        ghost = seen + ghost * (1.0 - seen.a); \
    }

vec4 QVAIGhostFilter(vec2 uv) {
    vec2 size = inputSize(0), unit = min(size.x, size.y) / size;
    vec4 body = readHere(0), ghost = vec4(0.0);
    DOUBLE(x, 0.3)
    DOUBLE(y, 0.4)
    DOUBLE(z, 0.74)
    ghost *= presence;
    // What the soul has left pales and darkens. The ghost hovers behind it, and a little of its light in front.
    vec3 left = mix(body.rgb, luma(body.rgb) * vec3(0.94, 1.0, 1.04), 0.6) * 0.74;
    body.rgb = mix(body.rgb, left, presence * 0.8);
    vec3 light = ghost.rgb * mix(1.0, inFront, body.a);
    float alpha = body.a + ghost.a * (1.0 - body.a);
    return vec4(min(body.rgb + light * (1.0 - body.rgb * body.a), alpha), alpha);
}
