// A colour closes over the picture on the beat, the corners first. Where the picture is transparent it stays so.
uniform float effectValue;  // 1: nothing of the picture is left at the height of the beat
uniform float pulse;        // 0..1
uniform vec4 coverCol;      // straight

vec4 QVColCoverPEMTIFilter(vec2 uv) {
    vec4 color = readHere(0);
    float cover = effectValue * (2.0 - effectValue) * pulse;
    vec2 away = uv - 0.5;
    cover += cover * (1.0 - cover) * (1.8 * dot(away, away));
    color.rgb = mix(color.rgb, coverCol.rgb * color.a, cover * coverCol.a);
    return color;
}
