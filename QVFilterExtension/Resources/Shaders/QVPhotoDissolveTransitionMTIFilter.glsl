// The incoming clip spreads along the grey levels of a picture; a soft front, lit a little, goes ahead of it.

uniform float progress;         // 0..1
uniform bool fromBrightToDark;  // begin where the picture is bright

// Width of the front, in grey levels 0..1; a power of two, so that both ends are exact.
const float kFront = 0.125;

vec4 QVPhotoDissolveTransitionMTIFilter(vec2 uv) {
    // The mean has finer steps than a channel: a narrow front spreads few levels over many pixels.
    float grey = dot(readHere(2).rgb, vec3(1.0 / 3.0));
    float turn = fromBrightToDark ? 1.0 - grey : grey;
    float t = clamp((progress * (1.0 + kFront) - turn) / kFront, 0.0, 1.0);
    float passed = t * t * (3.0 - 2.0 * t);
    vec4 color = mix(readHere(0), readHere(1), passed);
    color.rgb = min(color.rgb * (1.0 + 1.4 * passed * (1.0 - passed)), color.a);
    return color;
}
