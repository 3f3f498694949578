#version 450

// One curve of a line as a strip: pairs of vertices on ribs across it. The ribs divide the curve's turn evenly, so that it
// is as wide in a sharp bend as on a straight way, and fans out where it turns on the spot.
layout(location = 0) in vec4 ends;          // start and end, points
layout(location = 1) in vec4 controlEtc;    // control point; half the width; ribs, the first one not counted
layout(location = 2) in vec4 bendEtc;       // direction at the start and turn, radians; pixels a point; strength
layout(location = 3) in vec4 sizes;         // of the points' space; of the frame, pixels

layout(location = 0) flat out vec4 chord;   // the piece from this rib to the next: its start, and its way
layout(location = 1) flat out vec4 factors; // points a pixel; 1 / half the width; pixels a point
layout(location = 2) flat out vec3 tops;    // coverage at its middle; half the width and a half, pixels; 1 / the way squared

float cross2(vec2 a, vec2 b) { return a.x * b.y - a.y * b.x; }

vec2 directionAt(float rib) {
    float angle = bendEtc.x + bendEtc.y * rib / controlEtc.w;
    return vec2(cos(angle), sin(angle));
}

vec2 placeAt(float rib) {
    float t = rib / controlEtc.w;
    if (rib <= 0.0) return ends.xy;
    if (rib >= controlEtc.w) return ends.zw;
    vec2 control = controlEtc.xy;
    if (abs(bendEtc.y) > 0.02) {
        // Where the curve runs in the rib's direction.
        vec2 direction = directionAt(rib);
        float before = cross2(control - ends.xy, direction), after = cross2(direction, ends.zw - control);
        float sum = before + after;
        t = abs(sum) > 1e-12 ? clamp(before / sum, 0.0, 1.0) : t;
    }
    return mix(mix(ends.xy, control, t), mix(control, ends.zw, t), t);
}

void main() {
    float rib = min(float(gl_VertexIndex >> 1), controlEtc.w), side = float(gl_VertexIndex & 1) * 2.0 - 1.0;
    vec2 here = placeAt(rib), next = placeAt(min(rib + 1.0, controlEtc.w)), direction = directionAt(rib);
    float radius = controlEtc.z, pixel = 1.0 / bendEtc.z;
    // Room for the soft rim, and pieces that follow each other overlap a little.
    float reach = radius * 1.003 + pixel;
    float lap = rib <= 0.0 ? -0.2 * pixel : rib >= controlEtc.w ? 0.2 * pixel : 0.0;
    vec2 place = here + direction * lap + vec2(-direction.y, direction.x) * (side * reach);
    gl_Position = vec4(place / sizes.xy * 2.0 - 1.0, 0.0, 1.0);
    chord = vec4(here, next - here);
    factors = vec4(sizes.xy / sizes.zw, 1.0 / radius, bendEtc.z);
    tops = vec3(bendEtc.w, radius * bendEtc.z + 0.5, 1.0 / max(dot(chord.zw, chord.zw), 1e-12));
}
