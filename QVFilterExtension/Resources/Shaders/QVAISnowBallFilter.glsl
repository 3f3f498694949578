// The subject in a glass ball of snow. Inputs: the scene, the subject's mask, the scene out of focus and a little nearer,
// the ball's picture.
#include "color.glsl"
#include "particles.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

const float kBallSide = 0.98;              // of the ball's picture, shorter sides
const vec2 kBallMiddle = vec2(0.5, 0.45);  // of the glass in its picture
const float kBallRadius = 0.42;

// Cover by flakes on a sheet that the stirred water carries; `cells` across the ball.
float flakes(vec2 q, float cells, float fall, float size, float seed) {
    vec2 place = q * cells;
    float column = floor(place.x), pace = fract(column * 0.618034 + seed * 0.41);
    place.y -= iTime * fall * (0.7 + 0.6 * pace) - pace * 9.0;
    vec4 draw = particleDraw(place, seed);
    vec2 away = fract(place) - 0.5 - vec2((draw.x - 0.5) * 0.4 + 0.1 * wave(iTime * 0.3 + draw.y), (draw.y - 0.5) * 0.4);
    float radius = size * (0.5 + draw.w);
    float disc = max(1.0 - dot(away, away) / (radius * radius), 0.0);
    return min(disc * 1.7, 1.0) * step(draw.z, 0.12 + 0.8 * effectValue);
}

vec4 QVAISnowBallFilter(vec2 uv) {
    vec2 size = outputSize();
    float side = kBallSide * min(size.x, size.y);
    vec2 inPicture = (uv - 0.5) * size / side + 0.5;
    vec2 q = (inPicture - kBallMiddle) / kBallRadius;  // on the glass's disc
    float r2 = dot(q, q);

    // The room is darker to its corners.
    vec2 corner = uv - 0.5;
    vec4 behind = readHere(2);
    vec3 room = behind.rgb * (0.78 - 0.75 * dot(corner, corner)) * vec3(0.94, 0.97, 1.03);

    // In the ball: as through a lens, brighter and colder but for the subject.
    // Of a tall frame its upper part is seen, where faces are.
    vec2 middle = vec2(0.5, 0.5 - 0.32 * max(1.0 - size.x / size.y, 0.0));
    vec2 seen = middle + q * (0.86 + 0.2 * r2) * 0.5 * min(size.x, size.y) / size;
    vec4 scene = readInput(0, seen);
    float subject = readInput(1, seen).r;
    vec3 winter = mix(scene.rgb, vec3(luma(scene.rgb)), 0.45) * vec3(0.88, 0.97, 1.06);
    winter += (vec3(0.84, 0.91, 1.0) * scene.a - winter) * (0.2 + 0.2 * effectValue);

    // Stirred every six seconds: what then whirls comes to rest.
    float calm = fract(iTime / 6.0), stir = (1.0 - calm) * (1.0 - calm) * min(calm * 12.0, 1.0);
    vec2 s = q + stir * 0.16 * vec2(wave(q.y * 0.55 + iTime * 0.35), wave(q.x * 0.6 - iTime * 0.3));
    float far = max(flakes(s, 15.0, 1.7, 0.16, 1.0), 0.9 * flakes(s + 0.4, 10.0, 1.4, 0.16, 2.0));
    float close = max(flakes(s + 0.2, 7.0, 1.25, 0.15, 3.0), 0.85 * flakes(s * 1.1 + 0.7, 4.4, 1.0, 0.14, 4.0));
    vec3 inside = winter + (vec3(0.97, 0.985, 1.0) * scene.a - winter) * far;
    inside = mix(inside, scene.rgb, subject);
    inside += (vec3(0.98, 0.99, 1.0) * scene.a - inside) * (close * (1.0 - 0.45 * subject));

    float glass = clamp((1.0 - sqrt(r2)) * kBallRadius * side + 0.5, 0.0, 1.0);
    vec4 ball = readInput(3, inPicture);
    vec2 within = step(abs(inPicture - 0.5), vec2(0.5));
    ball *= within.x * within.y;
    vec4 color = mix(vec4(room, behind.a), vec4(inside, scene.a), glass);
    return ball + color * (1.0 - ball.a);
}
