// Draws the still pictures that the effects are shown on: the mountain lake across, upright and square.

#include <cstring>
#include <string>

#include <fmt/format.h>

#include "Examples/DemoFootage/Landscape/Landscape.h"
#include "Platform/Media/ImageFile.h"

using namespace qv;
using namespace qv::assets;

namespace {

Bitmap photograph(const View& view) {
    return {view.width, view.height,
            std::make_shared<const std::vector<std::uint8_t>>(Landscape(view).render({}))};
}

Bitmap crop(const Bitmap& source, int left, int top, int width, int height) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width) * std::size_t(height) * 4);
    for (int y = 0; y < height; ++y)
        std::memcpy(pixels->data() + std::size_t(y) * std::size_t(width) * 4,
                    source.row(top + y) + std::size_t(left) * 4, std::size_t(width) * 4);
    return {width, height, pixels};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_DemoPhoto DIRECTORY\n");
        return 1;
    }
    const Bitmap wide = photograph({1920, 1080, 1500, 590});
    const Bitmap tall = photograph({1080, 1920, 1720, 1010});
    const struct {
        const char* name;
        Bitmap picture;
    } files[] = {
        {"demo.png", wide}, {"demo_portrait.png", tall}, {"demo_square.png", crop(wide, 620, 0, 1080, 1080)}};
    for (const auto& file : files) {
        std::string error;
        if (!writePNG(file.picture, fmt::format("{}/{}", argv[1], file.name), &error)) {
            fmt::print(stderr, "draw_DemoPhoto: {}: {}\n", file.name, error);
            return 1;
        }
    }
}
