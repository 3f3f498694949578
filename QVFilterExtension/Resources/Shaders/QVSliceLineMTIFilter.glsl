// Blades of light cut the picture, whose pieces slip along the cuts.
#include "frame.glsl"
#include "particles.glsl"

uniform float effectValue;
uniform float round;  // its number
uniform vec3 slip;    // of each cut, 0..1
uniform vec3 flash;   // of each blade's light, 0..1
uniform vec3 blade;   // how far each has come across the frame, 0..1

// Where a place (shorter sides from the middle) lay before cut `index`; adds its light and shadow.
vec2 uncut(vec2 p, float index, float lean, float slips, float flashes, float crossed, float unit,
           inout float light, inout float shade) {
    vec4 draw = particleDraw(vec2(round, index), 61.0);
    float angle = (0.35 + 0.87 * draw.x) * lean;
    vec2 along = vec2(cos(angle), -sin(angle)), across = vec2(-along.y, along.x);
    float off = dot(p, across) - (draw.y - 0.5) * 0.32;
    float side = off > 0.0 ? 1.0 : -1.0;
    float reached = step(dot(p, along) * lean, -1.1 + 2.2 * crossed);
    float width = unit * (0.8 + 4.2 * flashes);
    float line = clamp(1.0 + (width - abs(off)) / unit, 0.0, 1.0);
    float glow = 1.0 / (1.0 + off * off * 900.0);
    float seen = reached * step(1e-4, crossed);
    light += seen * (line * max(flashes, 0.55 * slips) + 0.55 * glow * flashes * flashes);
    shade += seen * slips * 0.45 * max(1.0 - abs(off) * 14.0, 0.0) * step(0.0, off);
    return p - along * (side * 0.07 * effectValue * slips * (0.7 + 0.6 * draw.z));
}

vec4 QVSliceLineMTIFilter(vec2 uv) {
    vec2 size = inputSize(0), perShortSide = size / min(size.x, size.y);
    float unit = max(1.0 / 1080.0, 0.6 / min(size.x, size.y));
    vec2 p = (uv - 0.5) * perShortSide;
    float light = 0.0, shade = 0.0;
    // The last cut was made in pieces that had slipped already.
    p = uncut(p, 2.0, 1.0, slip.z, flash.z, blade.z, unit, light, shade);
    p = uncut(p, 1.0, -1.0, slip.y, flash.y, blade.y, unit, light, shade);
    p = uncut(p, 0.0, 1.0, slip.x, flash.x, blade.x, unit, light, shade);
    vec4 color = readInput(0, mirrorAtEdges(0.5 + p / perShortSide));
    float shown = min(3.0 * effectValue, 1.0);
    color.rgb *= 1.0 - min(shade, 0.7) * shown;
    color.rgb += min(light, 1.0) * shown * (color.a - color.rgb);
    return color;
}
