// The lesser damage: colours part sideways, a few lines tear, and the clips flicker before the cut holds.
// Inputs: outgoing, incoming.
#include "borders.glsl"
#include "glitch.glsl"

uniform float progress;
uniform float start, duration;  // seconds

vec4 QVGlitchSimpleTransitionMTIFilter(vec2 uv) {
    vec2 frame = inputSize(0);
    Burst burst = burstAt(progress, start, duration);
    vec2 perShortSide = frame / min(frame.x, frame.y);
    float y = offBorders(uv).y * perShortSide.y;
    vec4 mood = particleDraw(vec2(burst.number, 1.0), 23.0);

    // Three tears of different heights, each with frayed lines.
    vec4 middles = particleDraw(vec2(burst.number, 2.0), 29.0) * perShortSide.y;
    vec3 heights = vec3(0.05, 0.022, 0.01) * (0.4 + burst.strength);
    vec3 inTear = step(abs(y - middles.xyz), heights);
    float tear = max(inTear.x, max(inTear.y, inTear.z)) * step(0.01, burst.strength);
    vec4 line = particleDraw(vec2(y * 180.0, burst.number), 31.0);
    float slip = tear * ((mood.y - 0.5) * 0.24 + (line.x - 0.5) * 0.05) * (0.5 + burst.strength);

    // Around the middle every other step shows the other clip already, or still.
    float undecided = step(abs(burst.progress - 0.5), 0.17) * step(0.5, mood.z);
    float incoming = abs(step(0.5, burst.progress) - undecided);
    incoming = abs(incoming - tear * step(abs(burst.progress - 0.5), 0.3) * step(line.w, 0.75));

    vec2 place = uv + vec2(slip / perShortSide.x, 0.0);
    float apart = burst.strength * (0.008 + 0.03 * mood.x * mood.x) + abs(slip) * 0.2;
    vec2 split = vec2(apart, apart * 0.12) / perShortSide;
    vec2 size1 = inputSize(1);
    vec4 before = readPixel(0, wrappedPixel(place, frame)), after = readPixel(1, wrappedPixel(place, size1));
    before.r = readPixel(0, wrappedPixel(place + split, frame)).r;
    before.b = readPixel(0, wrappedPixel(place - split, frame)).b;
    after.r = readPixel(1, wrappedPixel(place + split, size1)).r;
    after.b = readPixel(1, wrappedPixel(place - split, size1)).b;
    vec4 color = mix(before, after, incoming);
    color.rgb = clamp(color.rgb * (1.0 + tear * (line.y - 0.35)), 0.0, color.a);

    vec4 still = mix(readHere(0), readHere(1), incoming);
    return mix(still, color, step(0.01, burst.strength));
}
