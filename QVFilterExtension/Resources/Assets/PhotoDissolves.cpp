// Draws the pictures that photo dissolves run through: grey levels that say when each place changes.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/PhotoDissolves/PhotoDissolves.h"

using namespace qv;
using namespace qv::assets;

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_PhotoDissolves DIRECTORY\n");
        return 1;
    }
    const struct {
        const char* name;
        TimeField (*draw)(int index);
        bool brightFirst = false;
    } sets[] = {
        {"flow", flow}, {"fade", fade}, {"facula", facula}, {"stroke", strokes}, {"radial", radial, true}};
    for (const auto& set : sets) {
        for (int index = 0; index < kPicturesInSet; ++index) {
            const std::string file = fmt::format("tran_photo_{}_{:02}.png", set.name, index);
            std::string error;
            if (!writePNG(evenGreys(set.draw(index), set.brightFirst), fmt::format("{}/{}", argv[1], file),
                          &error)) {
                fmt::print(stderr, "draw_PhotoDissolves: {}: {}\n", file, error);
                return 1;
            }
        }
    }
}
