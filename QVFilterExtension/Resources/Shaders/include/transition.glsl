// The beginning and the end of a transition from one clip to another, and what lies around a frame.

// Rises to 1 where less than a pixel of the way remains: there the incoming picture is shown as it is.
float settled(float progress, vec2 frame) {
    return clamp((progress - 1.0) * 4.0 * max(frame.x, frame.y) + 1.0, 0.0, 1.0);
}

// Takes half of the power back out of an eased progress, for what eases each of its parts again.
float relaxed(float progress) {
    float rest = sqrt(0.5 * min(progress, 1.0 - progress));
    return progress < 0.5 ? rest : 1.0 - rest;
}

// A place in pixels, up to a frame outside, as in the frame and its mirror images.
vec2 mirroredPlace(vec2 place, vec2 frame) { return frame - abs(frame - abs(place)); }
