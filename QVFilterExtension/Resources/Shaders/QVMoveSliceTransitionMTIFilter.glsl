// Strips that carry the outgoing clip and, next to it, the incoming one; neighbours move opposite ways.
#include "borders.glsl"
#include "easing.glsl"
#include "shutter.glsl"

uniform float progress;
uniform int count;  // of strips, at least 1
selector int type;  // 0 columns, 1 rows, 2 columns in turn, 3 rows in turn, 4 diagonal

bool inRows() { return type == 1 || type == 3; }
bool inTurn() { return type == 2 || type == 3; }

vec4 scene(vec2 place, float moment) {
    vec2 size = outputSize();
    float strips = max(float(count), 1.0);
    // Across and along the strips, 0..1 of the frame.
    vec2 at = place * (1.0 / size);
    if (inRows()) at = at.yx;
    if (type == 4) at = vec2(place.x + place.y, place.x - place.y + size.y) * (1.0 / (size.x + size.y));
    float strip = min(floor(at.x * strips), strips - 1.0);
    float late = inTurn() ? strip * (0.6 / strips) : 0.0;
    float moved = smootherstep(clamp(moment * (1.0 + (inTurn() ? 0.6 : 0.0)) - late, 0.0, 1.0));
    bool forwards = fract(strip * 0.5) > 0.25;
    float way = forwards ? -moved : moved;
    bool incoming = abs(at.y + way - 0.5) >= 0.5 && moved > 0.0;
    if (incoming) way += forwards ? 1.0 : -1.0;
    vec2 from = place;
    if (type == 4) from += vec2(0.5, -0.5) * (way * (size.x + size.y));
    else if (inRows()) from.x += way * size.x;
    else from.y += way * size.y;
    if (type == 4) from = size * (1.0 - abs(mod(from * (1.0 / size), 2.0) - 1.0));
    return incoming ? readPixel(1, pixelAt(from * (inputSize(1) / size))) : readPixel(0, pixelAt(from));
}

vec4 QVMoveSliceTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec4 color = MEAN_OVER_SHUTTER(scene, uv * size, progress, shutterAt(progress, 0.018), evenShift(pixelHere()), 0.0);
    return mix(color, readHere(1), step(1.0, progress));
}
