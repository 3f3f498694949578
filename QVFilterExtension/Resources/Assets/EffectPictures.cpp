// Draws the pictures that effects read or lay over the frame: paper, bubble, stars, sparkles, ribbon, noise and
// materials.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"

using namespace qv;
using namespace qv::assets;

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_EffectPictures DIRECTORY\n");
        return 1;
    }
    const struct {
        const char* name;
        Bitmap (*draw)();
    } files[] = {{"filter_snow_noise.png", paperNoise},
                 {"filter_bubble.png", soapBubble},
                 {"filter_star.png", star},
                 {"filter_ribbon.png", ribbon},
                 {"celebrate_gold_materia.png", goldLeaf},
                 {"celebrate_star17.png", sparkle},
                 {"celebrate_particle.png", lightDisc},
                 {"filter_noise.png", sensorNoise},
                 {"filter_material_foil.png", foilMaterial},
                 {"filter_material_gold.png", goldMaterial},
                 {"filter_material_marble.png", marbleMaterial}};
    for (const auto& file : files) {
        std::string error;
        if (!writePNG(file.draw(), fmt::format("{}/{}", argv[1], file.name), &error)) {
            fmt::print(stderr, "draw_EffectPictures: {}: {}\n", file.name, error);
            return 1;
        }
    }
}
