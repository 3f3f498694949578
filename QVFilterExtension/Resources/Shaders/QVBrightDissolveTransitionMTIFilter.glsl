// Through the light: highlights bloom first and shadows last, and of the other clip the shadows come out first. What is
// coloured runs into white in its own colour.
// Inputs: outgoing, incoming.
uniform float progress;

// How much is left at `time` 0..1 of what red, green and blue lack to white, when the brightest go first; each takes
// half of the time.
vec3 remaining(vec3 brightness, float time) {
    vec3 left = clamp(2.0 - brightness - 2.0 * time, 0.0, 1.0);
    return left * left * (3.0 - 2.0 * left);
}

// A clip's own time: a progress that is eased hard leaves it the middle of the transition only, which is spread here.
float timeOf(float progress) { return sqrt(min(progress * 1.12, 1.0)); }

vec4 QVBrightDissolveTransitionMTIFilter(vec2 uv) {
    vec4 outgoing = readHere(0), incoming = readHere(1);
    vec3 fading = remaining(outgoing.rgb, timeOf(progress)), coming = remaining(incoming.rgb, timeOf(1.0 - progress));
    float alpha = mix(outgoing.a, incoming.a, progress);
    // What each lacks to white is laid over the other.
    vec3 lower = (outgoing.a - outgoing.rgb) * fading, upper = (incoming.a - incoming.rgb) * coming;
    return vec4(max(alpha - lower - upper * (1.0 - lower), vec3(0.0)), alpha);
}
