// A wall of film frames, in turn those of the outgoing clip and, upside down, those of the incoming one.
// Inputs, all of the frame's size: outgoing, incoming, the film around a frame.
#include "borders.glsl"
#include "strip.glsl"

uniform vec2 center;    // of the view, frames
uniform float grow;     // scale of a frame; 1 fills the view
uniform vec2 turn;      // cosine and sine of the view's turn, clockwise
uniform float opening;  // scale of the film around a frame; 1 is its own
uniform float cover;    // of the film, 0..1
selector int fast;      // 1: about to be smeared, so that the nearest pixels do

vec4 QVFilmRotationTransitionMTIFilter(vec2 uv) {
    vec2 size = outputSize();
    vec2 away = vec2(pixelHere()) + 0.5 - 0.5 * size;
    vec2 turned = vec2(turn.x * away.x + turn.y * away.y, turn.x * away.y - turn.y * away.x);
    FilmPlace at = filmPlace(center + turned / (size * grow), ivec2(1), opening);
    if (at.incoming) at.inside = 1.0 - at.inside, at.film = 1.0 - at.film;
    vec4 picture, film;
    if (fast == 1) {
        ivec2 pixel = pixelAt(at.inside * size);
        picture = at.incoming ? readPixel(1, pixel) : readPixel(0, pixel);
        film = readPixel(2, pixel);
    } else {
        picture = at.incoming ? readInput(1, at.inside) : readInput(0, at.inside);
        film = readInput(2, at.film);
    }
    return underFilm(picture, film, cover);
}
