#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "Platform/Media/ImageFile.h"

namespace qv {
namespace {

TEST(PhotoDissolves, SpreadTheirGreysEvenly) {
    for (const char* set : {"flow", "fade", "facula", "stroke", "radial"}) {
        for (int index = 0; index < 4; ++index) {
            const std::string name = std::string("tran_photo_") + set + "_0" + std::to_string(index) + ".png";
            SCOPED_TRACE(name);
            std::string error;
            const Bitmap bitmap = readImageFile(QV_ASSET_BUNDLE "/" + name, &error);
            ASSERT_TRUE(bitmap) << error;
            // Thirds of a code: the mean of three channels that hardly differ.
            std::array<double, 766> counts{};
            int widest = 0;
            for (int y = 0; y < bitmap.height; ++y) {
                for (int x = 0; x < bitmap.width; ++x) {
                    const std::uint8_t* p = bitmap.row(y) + x * 4;
                    widest = std::max(widest, p[2] - p[0]);
                    ++counts[std::size_t(p[0] + p[1] + p[2])];
                }
            }
            EXPECT_LE(widest, 1) << "grey";
            double passed = 0, worst = 0;
            for (std::size_t i = 0; i < counts.size(); ++i) {
                passed += counts[i] / (bitmap.width * bitmap.height);
                worst = std::max(worst, std::abs(passed - double(i) / 765));
            }
            EXPECT_LT(worst, 0.01) << "a dissolve that runs unevenly";
        }
    }
}

TEST(LightLeaks, LieOnBlackAndAreWarm) {
    std::string error;
    const Bitmap light = readImageFile(QV_ASSET_BUNDLE "/light_warp2.jpg", &error);
    ASSERT_TRUE(light) << error;
    double red = 0, blue = 0, dark = 0;
    for (std::size_t i = 0; i < light.pixels->size(); i += 4) {
        red += (*light.pixels)[i], blue += (*light.pixels)[i + 2];
        dark += (*light.pixels)[i + 1] < 16;
    }
    EXPECT_GT(red, 2 * blue);
    EXPECT_GT(dark / (light.width * light.height), 0.2);
}

}  // namespace
}  // namespace qv
