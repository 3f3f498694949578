// A strip of film on a light table, its frames in turn those of the two clips.
// Inputs, all of the frame's size: outgoing, incoming, the film around a frame.
#include "borders.glsl"
#include "strip.glsl"

uniform float travel;   // frames pulled through to the left
uniform float grow;     // scale of the strip; 1 fills the frame
uniform vec2 turn;      // cosine and sine of its lean, clockwise
uniform float opening;  // scale of the film around a frame; 1 is its own
uniform float cover;    // of the film, 0..1
selector int fast;      // 1: about to be smeared, so that the nearest pixels do

vec4 QVFilmHorizontalTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = (uv - 0.5) * size;
    vec2 place = 0.5 + vec2(turn.x * away.x + turn.y * away.y, turn.x * away.y - turn.y * away.x) / (size * grow);
    FilmPlace at = filmPlace(vec2(place.x + travel, place.y), ivec2(1, 0), opening);
    vec4 picture, film;
    if (fast == 1) {
        ivec2 pixel = pixelAt(at.inside * size);
        picture = at.incoming ? readPixel(1, pixel) : readPixel(0, pixel);
        film = readPixel(2, pixel);
    } else {
        picture = at.incoming ? readInput(1, at.inside) : readInput(0, at.inside);
        film = readInput(2, at.film);
    }
    vec4 color = underFilm(picture, film, cover);

    // The table's light, and the shadow of the strip on its glass.
    float beyond = max(-place.y, place.y - 1.0);
    float shade = clamp(1.0 - beyond * 16.0, 0.0, 1.0);
    vec2 r = (uv - 0.5) * 2.0;
    vec3 table = vec3(0.985, 0.975, 0.945) * (1.0 - 0.16 * dot(r, r)) * (1.0 - 0.5 * shade * shade);
    return mix(vec4(table, 1.0), color, clamp(0.5 - beyond * size.y * grow, 0.0, 1.0));
}
