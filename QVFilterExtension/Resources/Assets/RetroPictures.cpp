// Draws the wear, lights and borders of the retro effects.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/RetroPictures/RetroPictures.h"

using namespace qv;
using namespace qv::assets;

namespace {

bool write(const std::string& folder, const std::string& name, const Bitmap& picture) {
    std::string error;
    if (writePNG(picture, fmt::format("{}/{}.png", folder, name), &error)) return true;
    fmt::print(stderr, "draw_RetroPictures: {}: {}\n", name, error);
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_RetroPictures DIRECTORY\n");
        return 1;
    }
    const struct {
        const char* prefix;
        int count;
        Bitmap (*draw)(int);
    } sets[] = {{"whitePoint-", 6, whitePoint},    {"whitePoint-a", 6, whiteDust},
                {"retroPointA", 6, darkPoints},    {"retroVariegated-", 5, variegated},
                {"retroScratches-", 5, scratches}, {"retroLine-", 4, dropout}};
    const struct {
        const char* name;
        Bitmap (*draw)();
    } files[] = {{"retroRedLine", redLine},
                 {"retroBlueLine", blueLine},
                 {"retroLight1", backLight},
                 {"retroLight2", flareLight},
                 {"retroFrame", printFrame}};
    for (const auto& set : sets)
        for (int i = 0; i < set.count; ++i)
            if (!write(argv[1], fmt::format("{}{}", set.prefix, i), set.draw(i))) return 1;
    for (const auto& file : files)
        if (!write(argv[1], file.name, file.draw())) return 1;
}
