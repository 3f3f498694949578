// A lens over the whole frame: strongest at one point, fading to nothing at a circle around it.
uniform float magnificationNum;  // at the point itself, times
uniform vec2 centerPoint;        // from the frame's middle, in half frames, x right, y up

vec4 QVCenterMagnifyMTIFilter(vec2 uv) {
    vec2 center = 0.5 + vec2(0.5, -0.5) * centerPoint;
    vec2 size = outputSize();
    vec2 away = uv - center;
    vec2 pixels = away * size;
    float radius = 0.3 * (size.x + size.y);
    float t = min(length(pixels) / radius, 1.0);
    float ease = t * t * (3.0 - 2.0 * t);
    return readInput(0, center + away * mix(1.0 / magnificationNum, 1.0, ease));
}
