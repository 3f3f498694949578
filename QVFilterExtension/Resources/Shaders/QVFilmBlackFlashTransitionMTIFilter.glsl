// Frames and black leader, one after the other. Inputs: outgoing, incoming.
#include "borders.glsl"
#include "exposure.glsl"
#include "film.glsl"
#include "frame.glsl"

uniform float slot;      // number of the moment
uniform float incoming;  // 0 the outgoing clip, 1 the incoming one
uniform float slipped;   // how far the frame has slipped down, frames
uniform float cue;       // 1 with a cue dot
uniform float leader;    // 0 a picture, 1 black leader, 2 leader with its hole

// Two random numbers of the moment.
vec2 drawOf(float moment) { return particleDraw(vec2(moment, 0.0), 7.0).xy; }

// 1 in a disc of `radius`, units, whose edge is burnt.
float discAt(vec2 away, float radius) { return clamp((radius - length(away)) * 0.16 + 0.5, 0.0, 1.0); }

vec4 QVFilmBlackFlashTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 units = size / unitPixels(size), place = uv * units;
    float down = uv.y - slipped, line = abs(down) * units.y;
    vec2 from = vec2(uv.x, fract(down));
    vec4 first = readPixel(0, pixelAt(from * size)), second = readInput(1, from);
    vec4 picture = mix(first, second, incoming);
    float slip = step(1e-4, slipped);
    picture = mix(picture, overexposed(picture, vec3(2.1, 1.8, 1.5)), slip);
    // The line between two frames.
    picture.rgb *= 1.0 - slip * clamp((19.0 - line) * 0.5, 0.0, 1.0);
    float spot = discAt(place - vec2(units.x - 120.0, 110.0), 34.0);
    float rim = discAt(place - vec2(units.x - 120.0, 110.0), 43.0);
    picture = lightOver(vec4(picture.rgb * (1.0 - 0.8 * cue * rim), picture.a), vec3(1.0, 0.93, 0.74) * (cue * spot));

    // Leader: grain, specks, scratches that let the lamp through, and the hole of the punch.
    vec4 grain = particleDraw(place * 0.5, slot + 40.0), speck = particleDraw(place * (1.0 / 26.0), slot + 80.0);
    float hole = leader > 1.5 ? 1.0 : 0.0;
    vec2 fromSpeck = fract(place * (1.0 / 26.0)) - speck.yz * 0.6 - 0.2;
    float light = step(0.988, speck.x) * clamp((0.16 * speck.w - length(fromSpeck)) * 14.0, 0.0, 1.0);
    float time = slot * 0.0625;
    light += filmScratch(uv, time, 16.0, 3.4 / units.x, 11.0) + filmScratch(uv, time, 16.0, 2.0 / units.x, 12.0) +
             0.7 * filmScratch(uv, time, 8.0, 7.0 / units.x, 13.0);
    vec2 toHole = place - units * vec2(0.5 + 0.1 * (drawOf(slot).x - 0.5), 0.5 + 0.12 * (drawOf(slot).y - 0.5));
    float inHole = hole * discAt(toHole, 150.0);
    float halo = hole * exp2(-max(length(toHole) - 150.0, 0.0) * 0.02);
    vec3 lamp = vec3(1.0, 0.95, 0.82);
    // Of what was printed on it a trace is left.
    vec3 black = 0.16 * picture.rgb * picture.rgb + vec3(0.06, 0.056, 0.05) + 0.06 * grain.x * grain.y + vec3(0.5, 0.2, 0.07) * (halo * 0.7);
    vec3 strip = mix(black, lamp, clamp(light * 0.85 + inHole, 0.0, 1.0));
    return mix(picture, vec4(strip, 1.0), min(leader, 1.0));
}
