// Cine film that runs down through the gate, its frames in turn those of the two clips.
// Inputs, all of the frame's size: outgoing, incoming, the film around a frame.
#include "borders.glsl"
#include "strip.glsl"

uniform float travel;   // frames that have run down
uniform float opening;  // scale of the film around a frame; 1 is its own
uniform float cover;    // of the film, 0..1
uniform float lamp;     // 0..1

vec4 QVFilmVerticalTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    FilmPlace at = filmPlace(vec2(uv.x, uv.y - travel), ivec2(0, 1), opening);
    ivec2 pixel = pixelAt(at.inside * size);
    vec4 picture = at.incoming ? readPixel(1, pixel) : readPixel(0, pixel);
    vec4 color = underFilm(picture, readPixel(2, pixelAt(at.film * size)), cover);
    // The lamp lights the middle of the gate best.
    vec2 r = uv - 0.5;
    return vec4(color.rgb * lamp * (1.0 - cover * 0.7 * dot(r, r)), color.a);
}
