// A monitor with picture tubes: colours that do not quite meet, lines, cool blacks, round corners.
#include "borders.glsl"
#include "color.glsl"
#include "film.glsl"
#include "gate.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

vec4 QVRetroRECMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float unit = unitPixels(size);
    float breath = 1.0 + 0.5 * wave(iTime * 0.31) * wave(iTime * 0.13);
    vec2 red = vec2(5.0, 1.0) * (effectValue * unit * breath), blue = vec2(-3.5, 1.5) * (effectValue * unit * breath);
    vec2 here = uv * size;
    vec4 middle = readHere(0);
    vec4 r = readPixel(0, pixelAt(here + red)), b = readPixel(0, pixelAt(here + blue));
    vec3 c = vec3(r.r, middle.g, b.b);

    // A tube's answer: soft lights, lifted cool blacks, fewer colours.
    float grey = luma(c);
    c = mix(vec3(grey), c, 0.82);
    c = c * (1.22 - 0.26 * c) * vec3(0.93, 0.97, 1.0) + vec3(0.018, 0.034, 0.046) * (1.0 - grey);
    // Bright parts bleed along their line.
    vec4 before = readPixel(0, pixelAt(here - vec2(14.0 * unit, 0.0)));
    c += max(before.rgb - 0.72, 0.0) * (0.55 * effectValue) * vec3(0.8, 0.95, 1.0);

    float lineHeight = size.y / (270.0 * size.y / min(size.x, size.y));
    float seen = clamp((lineHeight - 1.6) * 0.7, 0.0, 1.0);
    float line = 0.5 - 0.5 * wave(here.y / lineHeight);
    c *= 1.0 - seen * (0.16 + 0.20 * effectValue) * (1.0 - line) * (1.15 - grey);
    // Hum: a broad, faint band that climbs.
    c *= 1.0 + 0.05 * wave(uv.y * 0.9 + iTime * 0.23);
    vec4 draw = particleDraw(vec2(pixelHere()), timeSlot(iTime, 25.0));
    c += (draw.x + draw.y - 1.0) * (0.02 + 0.05 * effectValue) * (1.0 - 0.6 * grey);

    vec2 away = uv * 2.0 - 1.0;
    float r2 = dot(away, away) * 0.5;
    c *= (1.0 - 0.35 * r2 * r2) * gateOpening(0.5 + (uv - 0.5) * (1.0 - 0.032 * size.yx / max(size.x, size.y)), size);
    float alpha = max(max(r.a, middle.a), b.a);
    return vec4(clamp(c, 0.0, alpha), alpha);
}
