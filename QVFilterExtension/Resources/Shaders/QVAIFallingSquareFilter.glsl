// Squares of bright paper tumble down, each about an axis of its own; where one faces the light it flashes.
#include "color.glsl"
#include "particles.glsl"
#include "wave.glsl"

uniform float time;          // seconds
uniform float squareNumber;  // 0 none .. 1 many

// Lays a layer of `cells` squares along the shorter side over what is there. `fall` is in cells a second.
vec4 squaresOver(vec4 below, vec2 p, float cells, float fall, float focus, float seed) {
    vec2 place = p * cells;
    float column = floor(place.x), pace = fract(column * 0.618034 + seed * 0.37);
    place.y -= time * fall * (0.75 + 0.5 * pace) - pace * 9.0;
    vec4 draw = particleDraw(place, seed), more = particleDraw(place, seed + 50.0);
    vec2 away = fract(place) - 0.5 - vec2((draw.x - 0.5) * 0.24 + 0.1 * wave(time * 0.35 + draw.w), (draw.y - 0.5) * 0.24);

    // Turned in its plane, and seen from the side now and then.
    float turn = more.x + time * (0.12 + 0.2 * more.y) * (more.z > 0.5 ? 1.0 : -1.0);
    vec2 along = vec2(wave(turn), wave(turn - 0.25));
    float tumble = wave(more.w + time * (0.35 + 0.45 * draw.w));
    vec2 local = vec2(dot(away, along), dot(away, vec2(-along.y, along.x)));
    float side = 0.13 + 0.09 * draw.w;
    vec2 halfSides = vec2(side, side * max(abs(tumble), 0.06));
    vec2 inside = clamp((halfSides - abs(local)) * focus + 0.5, 0.0, 1.0);
    float cover = inside.x * inside.y * step(draw.z, 0.85 * squareNumber) * step(0.001, squareNumber);

    vec3 paper = mix(hueColor(floor(more.x * 7.0) / 7.0 + 0.02), vec3(1.0), 0.24);
    float facing = 0.7 + 0.3 * tumble, flash = facing * facing;
    flash *= flash * flash;
    vec3 color = paper * (0.62 + 0.4 * facing) + 0.5 * flash * flash;
    cover *= 0.94;
    return vec4(mix(below.rgb, min(color, 1.0), cover), mix(below.a, 1.0, cover));
}

vec4 QVAIFallingSquareFilter(vec2 uv) {
    vec2 size = outputSize();
    float shortSide = min(size.x, size.y);
    vec2 p = uv * size / shortSide;
    vec4 color = readHere(0);
    color = squaresOver(color, p, 17.0, 3.1, shortSide / 17.0, 1.0);
    color = squaresOver(color, p + 0.37, 10.0, 2.6, shortSide / 10.0, 2.0);
    color = squaresOver(color, p + 0.71, 5.7, 2.1, min(shortSide / 5.7, 34.0), 3.0);
    return squaresOver(color, p + 0.19, 3.1, 1.6, 7.0, 4.0);
}
