// Frames of two clips on film, without end.

struct FilmPlace {
    vec2 inside;    // the place in its frame
    vec2 film;      // the same in the picture of the film around a frame
    bool incoming;  // whether the frame is one of the incoming clip
};

// `place` in frames from the top left corner of frame (0,0), which shows the outgoing clip; `alternating` tells in which
// directions clips change from frame to frame. Where the film does not alternate it has one frame. `opening` is how much
// larger than a frame the film around it is.
FilmPlace filmPlace(vec2 place, ivec2 alternating, float opening) {
    vec2 frame = floor(place) * vec2(alternating);
    vec2 inside = place - frame;
    float number = frame.x + frame.y;
    return FilmPlace(inside, 0.5 + (inside - 0.5) / opening, number - 2.0 * floor(number * 0.5) > 0.5);
}

// A frame under its film, which covers 0..1 of it.
vec4 underFilm(vec4 picture, vec4 film, float cover) { return film * cover + picture * (1.0 - film.a * cover); }
