// Draws the frames that film transitions lay over the picture: strips of film, a lens and a viewfinder.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/FilmFrames/FilmFrames.h"

using namespace qv;
using namespace qv::assets;

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_FilmFrames DIRECTORY\n");
        return 1;
    }
    const struct {
        const char* name;
        Bitmap (*draw)();
    } files[] = {
        {"transitions_flim_06.png", stillFilmFrame},      {"transitions_flim_02_word.png", printedFilmFrame},
        {"transitions_film_frame_01.png", cineFilmFrame}, {"trans_Film_frame01_2.png", homeFilmFrame},
        {"transitions_flim_lens3.png", lensFrame},        {"transitions_CameraFrame.png", viewfinderFrame}};
    for (const auto& file : files) {
        std::string error;
        if (!writePNG(file.draw(), fmt::format("{}/{}", argv[1], file.name), &error)) {
            fmt::print(stderr, "draw_FilmFrames: {}: {}\n", file.name, error);
            return 1;
        }
    }
}
