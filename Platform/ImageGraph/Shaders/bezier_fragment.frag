#version 450

layout(location = 0) flat in vec4 chord;
layout(location = 1) flat in vec4 factors;
layout(location = 2) flat in vec3 tops;
layout(location = 0) out vec4 color;

void main() {
    vec2 away = gl_FragCoord.xy * factors.xy - chord.xy;
    float along = clamp(dot(away, chord.zw) * tops.z, 0.0, 1.0);
    float distance = length(away - along * chord.zw);
    float cover = clamp(tops.y - distance * factors.w, 0.0, 1.0) * tops.x;
    color = vec4(vec3(max(1.0 - distance * factors.z, 0.0)), cover);
}
