// Draws the clips that the effects are shown on: the lake in motion, a dancer in a street at night, and the
// dancer's mask.

#include <cmath>
#include <stdexcept>
#include <string>

#include <fmt/format.h>

#include "Examples/DemoFootage/Clips/ClipFile.h"
#include "Examples/DemoFootage/Clips/Music.h"
#include "Examples/DemoFootage/Dancer/NightStreet.h"
#include "Examples/DemoFootage/Landscape/Landscape.h"
#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Tone.h"

using namespace qv;
using namespace qv::assets;

namespace {

constexpr int kWidth = 1280, kHeight = 720, kFramesPerSecond = 25, kFrames = 100;
constexpr double kSeconds = double(kFrames) / kFramesPerSecond;

using Pixels = std::vector<std::uint8_t>;

void savePNG(const Pixels& rgba, const std::string& path) {
    std::string error;
    if (!writePNG({kWidth, kHeight, std::make_shared<const Pixels>(rgba)}, path, &error))
        throw std::runtime_error(path + ": " + error);
}

void drawLake(const std::string& directory) {
    constexpr float kTravel = 0.34f;
    const Landscape landscape({kWidth, kHeight, 1000, 393}, kTravel, float(kSeconds));
    const StereoSound music = lakeMusic(kSeconds);
    ClipFile clip(directory + "/demo_a.mp4", kWidth, kHeight, kFramesPerSecond, &music);
    for (int i = 0; i < kFrames; ++i) {
        const float seconds = float(i) / kFramesPerSecond, done = seconds / float(kSeconds);
        // The sun breaks through in the middle of the clip.
        const float sun = 0.80f + 0.30f * smoothstep(0.15f, 0.6f, done);
        clip.addFrame(landscape.render({.seconds = seconds,
                                        .cameraX = kTravel * (2 * smoothstep(-0.1f, 1.1f, done) - 1),
                                        .exposure = 0.78f + 0.05f * (1 - done),
                                        .sun = sun,
                                        .cloudShadow = 0.55f,
                                        .grain = 1.1f}));
    }
    clip.finish();
}

struct DancerFrame {
    Pixels picture, mask;
};

DancerFrame drawDancerFrame(const NightStreet& street, StageView view, int frame) {
    static const FilmTable film;
    const double seconds = double(frame) / kFramesPerSecond;
    view.cameraX = 0.14f * std::sin(6.2831853f * float(seconds / kSeconds));
    const double sinceBeat = seconds * 2 - std::floor(seconds * 2);
    const float pulse = float(std::exp(-3.2 * sinceBeat));

    // The shutter is open for two fifths of the frame's time.
    constexpr int kInstants = 4;
    Raster<Painted> figure(kWidth, kHeight);
    for (int i = 0; i < kInstants; ++i) {
        const double at = seconds + (double(i) / (kInstants - 1) - 0.5) * 0.4 / kFramesPerSecond;
        const Raster<Painted> instant =
            drawFigure(view, danceAt(at), {0.75f + 0.45f * pulse, 0.75f + 0.45f * pulse});
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                figure.at(x, y) = figure.at(x, y) + instant.at(x, y) * (1.0f / kInstants);
    }
    const Raster<Vec3> picture = street.draw(view, seconds, pulse, figure, danceAt(seconds).pelvis.x);

    DancerFrame result{Pixels(std::size_t(kWidth) * kHeight * 4),
                       Pixels(std::size_t(kWidth) * kHeight * 4, 255)};
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const std::size_t at = (std::size_t(y) * kWidth + std::size_t(x)) * 4;
            develop(film, picture.at(x, y), x, y, std::uint32_t(frame), 1.4f, &result.picture[at]);
            const auto gray = std::uint8_t(std::lround(255 * clamp01(figure.at(x, y).alpha)));
            std::fill_n(&result.mask[at], 3, gray);
        }
    return result;
}

void drawDancer(const std::string& directory) {
    const StageView view{kWidth, kHeight, 1250, 340};
    const NightStreet street(view, 0.15f);
    const StereoSound music = cityMusic(kSeconds);
    ClipFile clip(directory + "/demo_b.mp4", kWidth, kHeight, kFramesPerSecond, &music);
    ClipFile mask(directory + "/demo_b_mask.mp4", kWidth, kHeight, kFramesPerSecond, nullptr, 14);
    constexpr int kBatch = 12, kStillEvery = 25;
    for (int first = 0; first < kFrames; first += kBatch) {
        std::vector<DancerFrame> frames(std::size_t(std::min(kBatch, kFrames - first)));
        parallelFor(
            int(frames.size()),
            [&](int i) { frames[std::size_t(i)] = drawDancerFrame(street, view, first + i); }, 1);
        for (std::size_t i = 0; i < frames.size(); ++i) {
            clip.addFrame(frames[i].picture);
            mask.addFrame(frames[i].mask);
            if (const int frame = first + int(i); frame % kStillEvery == 0) {
                savePNG(frames[i].picture, fmt::format("{}/demo_b_{:03}.png", directory, frame));
                savePNG(frames[i].mask, fmt::format("{}/demo_b_mask_{:03}.png", directory, frame));
            }
        }
    }
    clip.finish();
    mask.finish();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_DemoClips DIRECTORY\n");
        return 1;
    }
    try {
        drawLake(argv[1]);
        drawDancer(argv[1]);
    } catch (const std::exception& failure) {
        fmt::print(stderr, "draw_DemoClips: {}\n", failure.what());
        return 1;
    }
}
