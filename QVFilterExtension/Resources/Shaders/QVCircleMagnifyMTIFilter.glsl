// A magnifying glass with a rim.
#include "frame.glsl"

uniform float magnificationNum;  // times; at 1 there is no glass
uniform vec2 centerPoint;        // of the frame, (0,0) top left
uniform float radius;            // of the glass, half shorter sides of the frame
uniform vec3 borderColor;        // of the rim

vec4 QVCircleMagnifyMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float unit = unitPixels(size);
    vec2 away = uv - centerPoint;
    float distance = length(away * size);
    float edge = radius * 540.0 * unit;
    float glass = clamp(edge - distance + 0.5, 0.0, 1.0);
    float shown = clamp((magnificationNum - 1.0) * 20.0, 0.0, 1.0);
    vec4 color = readInput(0, centerPoint + away * mix(1.0, 1.0 / magnificationNum, glass));
    // A shadow around the glass and inside it along the rim, then the rim itself, lighter above than below.
    float outside = max(distance - edge, 0.0) / (60.0 * unit), inside = max(edge - distance, 0.0) / (36.0 * unit);
    float shade = 0.35 * mix(max(1.0 - outside, 0.0), max(1.0 - inside, 0.0) * 0.5, glass);
    color.rgb *= 1.0 - shade * shown;
    float width = 9.0 * unit;
    float rim = clamp(width - abs(distance - edge) + 0.5, 0.0, 1.0) * shown;
    float across = (distance - edge) / width;
    vec3 rimColor = borderColor * (1.1 - 0.5 * across * across) + 0.25 * max(0.0, 1.0 - 3.0 * abs(across + 0.35));
    return mix(color, vec4(clamp(rimColor, 0.0, 1.0), 1.0), rim);
}
