// Draws what the film looks lay over the picture: dirt, borders, the marks of displays, and what a tape does.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/FilmLooks/FilmLooks.h"

using namespace qv;
using namespace qv::assets;

namespace {

/// Pictures of one kind; `name` is a format with the picture's number in it.
struct Series {
    const char* name;
    int count;
    Bitmap (*draw)(int index);
};
constexpr Series kSeries[] = {
    {"black_film_dirt_{:02}", 9, blackFilmDirt}, {"black_film_hair_{:04}", 6, filmHair},
    {"light_film_dirt_a_{:02}", 9, fineDirt},    {"light_film_dirt_b_{:02}", 10, lightDirt},
    {"film_scratch_{}", 6, filmScratch},         {"damage_film_burn_{}", 6, filmBurn},
    {"vhs_film_glitch_{}", 8, tapeTrouble}};

constexpr struct {
    const char* name;
    Bitmap (*draw)();
} kSingles[] = {{"blackFilm_frame", blackFilmGate},     {"light_film_frame", lightFilmGate},
                {"damage_film_frame", damagedFilmGate}, {"rec_film_corner", displayCorner},
                {"rec_film_auto", autoBadge},           {"rec_film_battery", batterySign},
                {"rec_film_dot", recordingDot},         {"vhs_film_rect", letterBox},
                {"vhs_film_triangle", playTriangle}};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_FilmLooks DIRECTORY\n");
        return 1;
    }
    const auto write = [&](const Bitmap& picture, const std::string& name) {
        std::string error;
        if (writePNG(picture, fmt::format("{}/{}.png", argv[1], name), &error)) return true;
        fmt::print(stderr, "draw_FilmLooks: {}: {}\n", name, error);
        return false;
    };
    for (const Series& series : kSeries)
        for (int i = 0; i < series.count; ++i)
            if (!write(series.draw(i), fmt::format(fmt::runtime(series.name), i))) return 1;
    for (const auto& single : kSingles)
        if (!write(single.draw(), single.name)) return 1;
}
