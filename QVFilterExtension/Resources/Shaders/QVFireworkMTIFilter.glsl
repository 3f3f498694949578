// Fireworks over the picture: rockets rise, burst, sink and fade, and the night lights up with them. Levels: 0
// chrysanthemum, 1 golden willow, 2 double ring, 3 heart, 4 crackling stars. More strength, larger and brighter
// shells and a darker night.
#include "color.glsl"

selector int level;
uniform float iTime;
uniform float effectValue;

// Steps of the additive recurrence that fills three dimensions most evenly (powers of the reciprocal root of
// x^4 = x + 1): neighbours in time or on a shell differ, and no place is left out.
const vec3 kSpread = vec3(0.819173, 0.671044, 0.549700);

// Angle of a direction in turns, 0..1, from up and clockwise, to within a 500th of a turn.
float turnsOf(vec2 d) {
    vec2 s = abs(d);
    float ratio = min(s.x, s.y) / (max(s.x, s.y) + 1e-5);
    float octant = ratio * (0.1784 - 0.0534 * ratio * ratio);  // atan(ratio) / 2 pi
    float quadrant = s.x > s.y ? 0.25 - octant : octant;
    float halfTurn = d.y > 0.0 ? 0.5 - quadrant : quadrant;
    return d.x < 0.0 ? 1.0 - halfTurn : halfTurn;
}

// Stars on `rays` rays from a point, at `radius` less up to its part `spread`, each with a tail that reaches in to the
// part `tail`. `turns` and `r` are the place's polar coordinates. x: light of heads,
// y: of tails.
vec2 stars(float turns, float r, float rays, float radius, float spread, float tail, float grain, float seed) {
    float ray = floor(turns * rays);
    vec3 draw = fract(ray * kSpread + seed);
    float reach = radius * (1.0 - spread * draw.y);
    float sideways = r * 6.2832 * (turns - (ray + 0.35 + 0.3 * draw.x) / rays);
    float ahead = r - reach;
    grain = min(grain, r * 3.0 / rays);  // never wider than the ray's sector
    float head = max(1.0 - (sideways * sideways + ahead * ahead) / (grain * grain + 1e-8), 0.0);
    if (level == 4) return vec2(head * head * step(0.55, fract(draw.z * 7.0 + floor(iTime * 15.0) * 0.618034)), 0.0);
    float thin = max(1.0 - abs(sideways) / (grain * 0.7 + 1e-4), 0.0);
    float along = clamp((r - tail * reach) / ((1.0 - tail) * reach + 1e-4), 0.0, 1.0) * step(r, reach);
    return vec2(head * head, thin * along * along) * (0.6 + 0.4 * draw.z);
}

// Colour of heads (near white in the middle) and tails.
vec3 starlight(vec2 light, vec3 tint) { return light.x * (tint * 1.3 + light.x * light.x) + light.y * tint * 1.1; }

// A shell at this moment. `center` and `size` are in short sides of the frame.
struct Shell {
    vec3 draw;
    vec2 center;
    float size, age, burst, left;  // age 0..0.25 rises, ..1.25 blooms; left 1..0 of the bloom; burst 1 when it has
    float seen;                    // squared distance from `seenFrom` beyond which there is no light
};

Shell shellAt(float number, vec2 frame) {
    Shell shell;
    float clock = iTime * 0.5 + number / 3.0;
    float salvo = floor(clock);
    shell.draw = fract(mod(salvo * 3.0 + number, 1024.0) * kSpread + 0.2);
    shell.center = frame * vec2(0.14 + 0.72 * shell.draw.x, 0.2 + 0.24 * shell.draw.y);
    shell.size = (0.27 + 0.2 * effectValue) * (0.8 + 0.4 * shell.draw.z);
    shell.age = (clock - salvo) * 1.25;
    shell.burst = step(0.25, shell.age);
    shell.left = 1.25 - max(shell.age, 0.25);
    float seen = shell.size * (level == 1 ? 1.5 : 1.4);
    shell.seen = seen * seen;
    return shell;
}

// A willow hangs below the place where it burst.
vec2 seenFrom(Shell shell) { return level == 1 ? shell.center + vec2(0.0, 0.5 * shell.size) : shell.center; }

// How much of its light a shell has left, and the flash with which it bursts.
float fadeOf(Shell shell) { return shell.left * shell.left * (3.0 - 2.0 * shell.left) * shell.burst; }
float flashOf(Shell shell) { return max(shell.left * 6.0 - 5.0, 0.0) * shell.burst; }

vec3 rocket(Shell shell, vec2 p, vec2 frame) {
    float rise = min(shell.age * 4.0, 1.0);  // a spark with a tail below it, slowing down
    vec2 below = p - vec2(shell.center.x, mix(frame.y + 0.05, shell.center.y, rise * (2.0 - rise)));
    float tail = max(1.0 - below.y / (0.22 * (1.0 - rise) + 0.02), 0.0) * step(0.0, below.y);
    return tail * max(1.0 - abs(below.x) * 120.0, 0.0) * (1.0 - shell.burst) * vec3(1.0, 0.8, 0.5);
}

vec3 bloomOf(Shell shell, vec2 p) {
    vec3 draw = shell.draw;
    float size = shell.size, left = shell.left, bloom = 1.0 - left;
    float radius = size * (1.0 - left * left * left * left) + 1e-3;
    float grain = (0.011 + 0.008 * effectValue) * (level == 4 ? 1.15 : 1.0);
    vec3 tint = level == 1   ? vec3(1.0, 0.68, 0.28)
                : level == 3 ? mix(vec3(1.0, 0.08, 0.28), vec3(1.0, 0.35, 0.75), draw.x)
                : level == 4 ? vec3(1.0, 0.84, 0.5)
                             : mix(hueColor(draw.x * 2.7 + draw.z), vec3(1.0), 0.12);
    vec2 d = p - shell.center;
    float halo = max(1.0 - dot(d, d) / (size * size), 0.0);
    halo *= halo;

    vec3 light;
    if (level == 1) {
        // A tail's embers have fallen by the square of their part f of the way out:
        // |d - (0, fall f^2)| = radius f, solved for f^2.
        float fall = size * (0.1 + 0.9 * bloom * bloom);
        float half_ = d.y * fall + 0.5 * radius * radius;
        float inside = half_ * half_ - fall * fall * dot(d, d);
        float f2 = dot(d, d) / (half_ + sqrt(max(inside, 0.0)) + 1e-6);
        d.y -= fall * f2;
        vec2 gold = stars(turnsOf(d), radius * sqrt(max(f2, 0.0)), 36.0, radius, 0.3, 0.1, grain, draw.z);
        gold.y *= 0.6 + 0.8 * fract((floor(iTime * 15.0) + floor(f2 * 40.0)) * 0.618034);
        light = starlight(gold, tint) * step(0.0, inside) * step(0.0, half_);
    } else if (level == 2) {
        d.y -= 0.12 * size * bloom * bloom;
        // The rings lie askew in space: turned in the picture, then squeezed.
        float lean = draw.x * 1.6 - 0.8;
        d = vec2(d.x + lean * d.y, (d.y - lean * d.x) * 2.2) * inversesqrt(1.0 + lean * lean);
        float r = length(d), turns = turnsOf(d);
        light = starlight(stars(turns, r, 34.0, radius * 1.2, 0.03, 0.88, grain * 1.5, draw.z), tint);
        light += starlight(stars(turns, r, 20.0, radius * 0.6, 0.08, 0.8, grain * 1.5, draw.y), hueColor(draw.z + 0.4));
    } else if (level == 3) {
        d.y += 0.25 * radius - 0.12 * size * bloom * bloom;
        float turns = turnsOf(d);
        float h = 1.0 - abs(turns * 2.0 - 1.0);  // 0 up, 1 down
        float outline = (13.0 + h * (10.0 * h - 22.0)) * h / (6.0 - 5.0 * h);
        light = starlight(stars(turns, length(d), 46.0, radius * outline * 1.25, 0.02, 0.8, grain * 1.2, draw.z), tint);
    } else {
        d.y -= 0.14 * size * bloom * bloom;
        float r = length(d), turns = turnsOf(d);
        bool crackles = level == 4;
        vec2 outer = stars(turns, r, crackles ? 76.0 : 38.0, radius * 1.1, crackles ? 0.6 : 0.22, 0.5, grain, draw.z);
        vec2 inner = stars(turns, r, crackles ? 57.0 : 23.0, radius * 0.65, crackles ? 0.8 : 0.5, 0.5, grain, draw.y);
        light = starlight(outer, tint) + starlight(inner, crackles ? tint : hueColor(draw.z + 0.4));
    }
    float fade = fadeOf(shell);
    return light * fade * 1.7 + tint * halo * (flashOf(shell) * 0.6 + 0.22 * fade);
}

vec4 QVFireworkMTIFilter(vec2 uv) {
    vec2 frame = outputSize() / min(outputSize().x, outputSize().y);
    vec2 p = uv * frame;
    Shell shells[3] = Shell[3](shellAt(0.0, frame), shellAt(1.0, frame), shellAt(2.0, frame));
    vec3 light = rocket(shells[0], p, frame) + rocket(shells[1], p, frame) + rocket(shells[2], p, frame);
    float lit = 0.0;
    ivec3 near = ivec3(0);
    for (int i = 0; i < 3; ++i) {
        vec2 d = p - seenFrom(shells[i]);
        near[i] = dot(d, d) < shells[i].seen && shells[i].burst > 0.0 ? 1 : 0;
        lit += flashOf(shells[i]) + 0.3 * fadeOf(shells[i]);
    }
    // A loop over those that shine here, which are seldom more than one, costs less than all three.
    while (near.x + near.y + near.z > 0) {
        Shell shell = near.x > 0 ? shells[0] : near.y > 0 ? shells[1] : shells[2];
        near = near.x > 0 ? ivec3(0, near.yz) : near.y > 0 ? ivec3(0, 0, near.z) : ivec3(0);
        light += bloomOf(shell, p);
    }
    light = min(light * (0.6 + effectValue), 1.0);

    vec4 color = readHere(0);
    float night = min(effectValue * 1.6, 1.0);
    vec3 rgb = color.rgb * (1.0 - night * mix(vec3(0.84, 0.8, 0.68), vec3(0.3, 0.3, 0.35), min(lit * 0.4, 1.0)));
    rgb += light - rgb * light;  // screen
    float alpha = max(color.a, max(light.r, max(light.g, light.b)));
    return vec4(min(rgb, alpha), alpha);
}
