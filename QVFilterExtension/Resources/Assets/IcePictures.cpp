// Draws frost and the glass ball of snow.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/IcePictures/IcePictures.h"

using namespace qv;
using namespace qv::assets;

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_IcePictures DIRECTORY\n");
        return 1;
    }
    const struct {
        const char* name;
        Bitmap picture;
    } files[] = {{"celebrate_aiIceMask.png", frost(1280, 720)},
                 {"celebrate_aiIceMaskV.png", frost(720, 1280)},
                 {"celebrate_glassBall.png", glassBall()}};
    for (const auto& file : files) {
        std::string error;
        if (!writePNG(file.picture, fmt::format("{}/{}", argv[1], file.name), &error)) {
            fmt::print(stderr, "draw_IcePictures: {}: {}\n", file.name, error);
            return 1;
        }
    }
}
