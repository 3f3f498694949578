// Draws the clips that subjects turn into.

#include <stdexcept>
#include <string>

#include <fmt/format.h>

#include "Platform/Media/ClipWriter.h"
#include "Platform/Media/PixelConversion.h"
#include "QVFilterExtension/Resources/Assets/SceneClips/SceneClips.h"

using namespace qv;
using namespace qv::assets;

namespace {

void write(const SceneClip& clip, const std::string& path) {
    const ClipVideoFormat format{.width = kSceneWidth,
                                 .height = kSceneHeight,
                                 .timeBase = {1, kSceneFramesPerSecond},
                                 .averageFrameRate = {kSceneFramesPerSecond, 1},
                                 .realFrameRate = {kSceneFramesPerSecond, 1},
                                 .tags = {.primaries = 1, .transfer = 1, .matrix = 1, .rangeIsKnown = true}};
    // One thread and no remark of the encoder's about itself: the same bytes on every machine.
    const ClipWriterOptions options{.codec = "libx264",
                                    .crf = 24,
                                    .threads = 1,
                                    .bitstreamFilters = "filter_units=remove_types=6",
                                    .options = {{"g", "15"}}};
    std::string error;
    const auto writer = ClipWriter::create(path, format, options, nullptr, &error);
    if (!writer) throw std::runtime_error(error);
    for (int i = 0; i < clip.frames; ++i) {
        const PixelBuffer frame = writer->makeFrame();
        const SceneFrame picture = clip.draw(i);
        if (!frame || !convertFromRGBA8(picture.data(), kSceneWidth * 4, frame) ||
            !writer->write(ClipFrame{frame, i, 1}))
            throw std::runtime_error(path + ": " + writer->error());
    }
    if (!writer->finish()) throw std::runtime_error(writer->error());
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_SceneClips DIRECTORY\n");
        return 1;
    }
    const std::string directory = argv[1];
    write(blownSand(), directory + "/effect_scene_desert_1280_15.mp4");
    write(nightFacade(), directory + "/effect_scene_build_1280_15.mp4");
} catch (const std::exception& failure) {
    fmt::print(stderr, "draw_SceneClips: {}\n", failure.what());
    return 1;
}
