// A punch towards the viewer on the beat, smeared outwards while it is fast.
#include "borders.glsl"
#include "motion.glsl"

uniform float effectValue;  // 1: half as large again
uniform float pulse;        // 0..1
uniform float pulseMotion;  // change of `pulse` while the shutter is open

vec4 tap(vec2 place) { return readPixel(0, pixelAt(place)); }

vec4 QVZoomPEMTIFilter(vec2 uv) {
    float shrink = 1.0 / (1.0 + 0.5 * effectValue * pulse);
    vec2 from = (uv - 0.5) * shrink * inputSize(0);
    vec2 way = from * (0.5 * effectValue * pulseMotion * shrink);
    return MEAN_ALONG(tap, 0.5 * inputSize(0) + from, way, tapShift(pixelHere()));
}
