// Two upright panels in a dark room whose floor mirrors them. Inputs: the left panel's picture, the right one's.
// Lengths in halves of the frame's height.
uniform float ratio;         // of the frame, width to height
uniform float focus;         // distance of a panel that fills the frame
uniform vec4 panel1, panel2;  // x: right of the view, y: distance, z, w: cosine and sine of the turn, clockwise from above
uniform float room;          // light of the room, 0..1

const float kGap = 0.02;  // between a panel and its mirror image

struct Hit {
    vec2 place;   // in the panel's picture
    float cover;  // of the panel or its mirror image, 0..1
    float light;  // of what is seen
};

Hit hitOf(vec2 view, vec4 panel) {
    vec3 ray = vec3(view, focus), normal = vec3(-panel.w, 0.0, panel.z);
    float along = (normal.x * panel.x + normal.z * panel.y) / dot(normal, ray);
    vec2 from = ray.xz * along - panel.xy;
    vec2 at = vec2(dot(from, panel.zw) / ratio, ray.y * along);
    float mirrored = step(1.0 + kGap, at.y);
    at.y = mix(at.y, 2.0 + 2.0 * kGap - at.y, mirrored);
    vec2 place = at * 0.5 + 0.5;
    // Pixels of the frame to the panel's edges.
    vec2 edge = min(place, 1.0 - place) * outputSize() * vec2(max(abs(panel.z), 0.2), 1.0) / max(along, 0.1);
    vec2 cover = clamp(edge + 0.5, 0.0, 1.0);
    float depth = 1.0 - place.y;  // below the floor
    float light = mix(1.0, 0.34 * max(1.0 - depth * 2.2, 0.0), mirrored) * (1.0 - 0.45 * panel.w * panel.w);
    return Hit(place, along > 0.0 ? cover.x * cover.y : 0.0, light);
}

vec4 QVPicMoveTransitionMTIFilter(vec2 uv) {
    vec2 view = (uv * 2.0 - 1.0) * vec2(ratio, 1.0);
    Hit first = hitOf(view, panel1), second = hitOf(view, panel2);
    // A floor that is lit where it meets the wall.
    float horizon = 0.55, below = max(uv.y - horizon, 0.0), above = max(horizon - uv.y, 0.0);
    float glow = (1.0 - 2.0 * (uv.x - 0.5) * (uv.x - 0.5)) / (1.0 + 22.0 * above * above + 60.0 * below * below);
    vec4 color = vec4(room * (vec3(0.03, 0.034, 0.045) + glow * vec3(0.27, 0.31, 0.38)), 1.0);
    vec4 left = readInput(0, first.place), right = readInput(1, second.place);
    left.rgb *= first.light, right.rgb *= second.light;
    color = mix(color, left, first.cover);
    return mix(color, right, second.cover);
}
