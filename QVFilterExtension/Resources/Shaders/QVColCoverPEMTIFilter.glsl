// A colour closes over the picture on the beat, from the corners inwards, as an iris does. Where the picture is
// transparent it stays so.
uniform float effectValue;  // 1: nothing of the picture is left at the height of the beat
uniform float pulse;        // 0..1
uniform vec4 coverCol;      // straight

vec4 QVColCoverPEMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    vec2 size = outputSize();
    float closed = effectValue * (2.0 - effectValue) * pulse;
    float away = length((uv - 0.5) * size) / (0.5 * length(size));
    // The rim is softer the wider it stands open.
    const float kSoft = 0.16;
    float rim = mix(1.0 + kSoft, -kSoft, closed * (0.5 + 0.5 * closed));
    float cover = smoothstep(rim - kSoft, rim + kSoft, away);
    color.rgb = mix(color.rgb, coverCol.rgb * color.a, cover * coverCol.a);
    return color;
}
