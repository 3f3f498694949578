// A bright line scans the picture: before it the outgoing clip, pressed aside like by a lens, behind it the incoming
// one, which still glows with the scan's lines.
#include "borders.glsl"

uniform float progress;  // eased: fast at both ends, at rest in the middle
uniform float ratio;     // of the frame, width to height
// Where the line moves to: 0 down, 1 up, 2 right, 3 left, 4 down to the right, 5 outwards as a circle.
selector int scanType;

vec4 QVScanTransitionMTIFilter(vec2 uv) {
    vec2 aspect = vec2(max(ratio, 1.0), max(1.0 / ratio, 1.0));  // the shorter side is 1
    // The way that the line moves, and how far along it a pixel lies.
    vec2 place = offBorders(uv) * aspect, way = vec2(0.0, 1.0), away = place - 0.5 * aspect;
    float extent = aspect.y, at = place.y;
    if (scanType == 1) way = vec2(0.0, -1.0), at = aspect.y - at;
    if (scanType == 2) way = vec2(1.0, 0.0), at = place.x, extent = aspect.x;
    if (scanType == 3) way = vec2(-1.0, 0.0), at = aspect.x - place.x, extent = aspect.x;
    if (scanType == 4) {
        way = vec2(0.7071068);
        extent = dot(aspect, way), at = dot(place, way);
    }
    if (scanType == 5) {
        at = length(away), extent = 0.5 * length(aspect);
        way = away / max(at, 1e-4);
    }
    const float kReach = 0.16;  // of the glow, to either side
    // Most of the ease is taken back: the line only lingers in the middle.
    float fromMiddle = 2.0 * progress - 1.0;
    float come = 0.5 + 0.5 * sign(fromMiddle) * pow(abs(fromMiddle), 0.42);
    float distance = at - mix(-kReach, extent + kReach, come);
    float near = max(1.0 - abs(distance) * (1.0 / kReach), 0.0);
    float glow = near * near, lens = glow * (1.0 - near) * 0.22;
    bool behind = distance < 0.0;

    vec2 bent = way * (behind ? -lens : lens) / aspect;
    vec4 next = readInput(1, uv + bent), last = readPixel(0, pixelAt((uv + bent) * outputSize()));
    vec4 color = behind ? next : last;
    float line = glow * glow;
    line *= line;
    line *= line;
    float fine = abs(fract(distance * 90.0) - 0.5);  // lines of a ninetieth of the shorter side
    float light = (behind ? glow * (0.25 + 0.7 * fine) : 0.45 * glow * near);
    vec3 lit = clamp(light * vec3(0.25, 0.65, 1.0) + line * 1.2, vec3(0.0), vec3(1.0));
    return vec4(color.rgb + lit * (color.aaa - color.rgb), color.a);
}
