// The clips that subjects turn into.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "Platform/Media/ClipReader.h"

namespace qv {
namespace {

/// Mean difference of the luma of two frames.
double difference(const PixelBuffer& a, const PixelBuffer& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const auto at = [&](const PixelBuffer& frame) {
                return double(frame.plane(0).data[std::size_t(y) * frame.plane(0).rowBytes + std::size_t(x)]);
            };
            sum += std::abs(at(a) - at(b));
        }
    }
    return sum / (a.width() * a.height());
}

TEST(SceneClips, AreSmallAndRunInALoop) {
    for (const char* name : {"effect_scene_desert_1280_15.mp4", "effect_scene_build_1280_15.mp4"}) {
        SCOPED_TRACE(name);
        const std::string path = std::string(QV_ASSET_BUNDLE "/") + name;
        EXPECT_LE(std::filesystem::file_size(path), 3u << 20);
        const auto reader = ClipReader::open(path);
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->info().video.width, 1280);
        EXPECT_EQ(reader->info().video.averageFrameRate, (Rational{15, 1}));
        const PixelBuffer first = reader->nextFrame().value().pixels;
        PixelBuffer last = first;
        double steps = 0, widest = 0;
        int frames = 1;
        for (; auto frame = reader->nextFrame(); ++frames) {
            const double step = difference(last, frame->pixels);
            steps += step;
            widest = std::max(widest, step);
            last = frame->pixels;
        }
        EXPECT_GE(frames, 45);
        EXPECT_GT(steps / (frames - 1), 1) << "nothing moves";
        EXPECT_LT(difference(last, first), 1.2 * widest) << "the loop has a seam";
    }
}

}  // namespace
}  // namespace qv
