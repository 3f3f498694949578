// A magnifying glass: a lens in a rim of metal, with a handle.
#include "frame.glsl"

uniform float magnificationNum;  // times; at 1 there is no glass
uniform vec2 centerPoint;        // of the frame, (0,0) top left
uniform float radius;            // of the glass, half shorter sides of the frame
uniform vec3 borderColor;        // of the rim and the handle

vec4 QVCircleMagnifyMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    float unit = unitPixels(size), pixel = 1.0 / unit;
    vec2 away = uv - centerPoint;
    // Lengths are in 1/1080 of the shorter side from here on.
    vec2 at = away * size * pixel;
    float distance = length(at), edge = radius * 540.0;
    vec2 way = at / max(distance, 1e-3);
    float glass = clamp((edge - distance) * unit + 0.5, 0.0, 1.0);
    float shown = clamp((magnificationNum - 1.0) * 20.0, 0.0, 1.0);
    // The glass bends most along its rim.
    float t = distance / edge, outer = max(t - 0.72, 0.0);
    float bent = 1.0 / magnificationNum * (1.0 + 1.6 * outer * outer * (magnificationNum - 1.0));
    vec4 color = readInput(0, centerPoint + away * mix(1.0, bent, glass));

    // The handle points down to the right, out of the rim; its shadow and the glass's fall below them.
    const vec2 kAlong = vec2(0.731, 0.682);
    float along = dot(at, kAlong) - edge, across = dot(at, vec2(-kAlong.y, kAlong.x));
    float grip = smoothstep(50.0, 90.0, along);
    float thick = mix(9.0, 19.0, grip);
    float end = max(along - 300.0, 0.0);
    float bar = length(vec2(end, across)) - thick;
    float handle = clamp(0.5 - bar * unit, 0.0, 1.0) * step(0.0, along) * shown;
    vec2 shifted = at - vec2(10.0, 24.0);
    float behind = max(length(shifted) - edge, 0.0) / 70.0;
    float barBehind = max(length(vec2(max(dot(shifted, kAlong) - edge - 300.0, 0.0),
                                      dot(shifted, vec2(-kAlong.y, kAlong.x)))) - 16.0, 0.0) / 40.0;
    float shade = max(1.0 - behind, step(0.0, dot(shifted, kAlong)) * (1.0 - min(barBehind, 1.0)));
    color.rgb *= 1.0 - 0.42 * shown * shade * shade * (1.0 - glass);
    // In the glass: dark along the rim, a crescent of light above.
    float inner = clamp(1.0 - (edge - distance) / 46.0, 0.0, 1.0);
    color.rgb *= 1.0 - 0.38 * shown * glass * inner * inner;
    vec2 lamp = vec2(-0.55, -0.835);
    float crescent = smoothstep(0.8, 0.9, t) * smoothstep(0.97, 0.93, t) * smoothstep(0.72, 1.0, dot(way, lamp));
    color.rgb += 0.6 * shown * glass * crescent * (color.a - color.rgb);

    // Rim and grip: rounded metal under the same lamp.
    float round_ = (distance - edge) / 9.0;
    float rim = clamp((9.0 - abs(distance - edge)) * unit + 0.5, 0.0, 1.0) * shown;
    float facing = dot(way, lamp);
    float polish = max(1.0 - abs(round_ + 0.3) * 2.2, 0.0) * max(0.25 + 0.9 * facing * facing * sign(facing), 0.08);
    vec3 rimColor = borderColor * (1.05 - 0.6 * round_ * round_) + 0.8 * polish * vec3(1.0, 0.98, 0.92);
    float over = across / thick;
    vec3 gripColor = mix(borderColor, vec3(0.10, 0.08, 0.07), grip) * (1.05 - 0.7 * over * over);
    gripColor += 0.35 * max(1.0 - abs(over - 0.35) * 3.0, 0.0);
    color = mix(color, vec4(clamp(gripColor, 0.0, 1.0), 1.0), handle);
    return mix(color, vec4(clamp(rimColor, 0.0, 1.0), 1.0), rim);
}
