#include "Platform/Drawing/UIImage.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>

#include "Platform/Drawing/BitmapCanvas.h"
#include "Platform/Drawing/Private/ImageResampling.h"
#include "Platform/Media/ImageFile.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

using Pixel = std::array<std::uint8_t, 4>;
using Mode = UIImage::ResizingMode;

Bitmap bitmapOf(int width, int height, const std::function<Pixel(int x, int y)>& pixelAt) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (auto value : pixelAt(x, y)) pixels->push_back(value);
    return {width, height, pixels};
}

Pixel at(const Bitmap& bitmap, int x, int y) {
    const auto* p = bitmap.row(y) + x * 4;
    return {p[0], p[1], p[2], p[3]};
}

/// Every pixel differs from its neighbours and says where it comes from.
Pixel labelled(int x, int y) {
    return {std::uint8_t(x * 10), std::uint8_t(y * 10), 7, 255};
}

Bitmap drawn(const UIImage& image, double width, double height, double scale = 1) {
    BitmapCanvas canvas({width, height}, false, scale);
    canvas.drawImage(image, {{0, 0}, {width, height}});
    return canvas.image().bitmap();
}

TEST(UIImage, ReadsFilesWithTheScaleInTheirName) {
    TemporaryFolder folder;
    auto bitmap = bitmapOf(6, 4, labelled);
    for (auto [name, scale] :
         {std::pair("p.png", 1.0), {"p@2x.png", 2.0}, {"p@3x.png", 3.0}, {"@2x-p.png", 1.0}}) {
        ASSERT_TRUE(writePNG(bitmap, folder / name));
        auto image = UIImage::imageWithContentsOfFile(folder / name);
        ASSERT_TRUE(image) << name;
        EXPECT_EQ(image.scale(), scale);
        EXPECT_EQ(image.size(), (CGSize{6 / scale, 4 / scale}));
        EXPECT_EQ(*image.bitmap().pixels, *bitmap.pixels);
    }
    EXPECT_FALSE(UIImage::imageWithContentsOfFile(folder / "missing.png"));
    EXPECT_EQ(UIImage().size(), (CGSize{0, 0}));
}

TEST(Resampling, AgreesWithTheTentSummedInTwoDimensions) {
    auto source = bitmapOf(53, 41, [](int x, int y) {
        auto alpha = std::uint8_t((x * 37 + y * 91) % 256);
        return Pixel{std::uint8_t(alpha * (x % 5) / 4), std::uint8_t(alpha / 2), alpha, alpha};
    });
    for (auto [width, height] : {std::pair(13, 9), {31, 40}, {80, 17}, {1, 60}}) {
        auto resampled = resampledBitmap(source, width, height);
        double stepX = 53.0 / width, stepY = 41.0 / height;
        auto tent = [](double distance, double step) {
            return std::max(0.0, 1 - std::abs(distance) / std::max(step, 1.0));
        };
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                double centerX = std::clamp((x + 0.5) * stepX - 0.5, 0.0, 52.0);
                double centerY = std::clamp((y + 0.5) * stepY - 0.5, 0.0, 40.0);
                std::array<double, 4> sum{};
                double total = 0;
                for (int v = 0; v < 41; ++v)
                    for (int u = 0; u < 53; ++u) {
                        double weight = tent(u - centerX, stepX) * tent(v - centerY, stepY);
                        total += weight;
                        for (int c = 0; c < 4; ++c) sum[c] += weight * at(source, u, v)[c];
                    }
                auto pixel = at(resampled, x, y);
                for (int c = 0; c < 4; ++c) {
                    ASSERT_NEAR(pixel[c], sum[c] / total, 0.51)
                        << x << ", " << y << " of " << width << " x " << height;
                    ASSERT_LE(pixel[c], pixel[3]);
                }
            }
    }
}

TEST(ResizableImage, KeepsItsCapsAndRepeatsWholeTiles) {
    // Caps of 2, 3, 1, 2 pixels leave a middle of 5 × 6.
    auto image = UIImage(bitmapOf(10, 9, labelled)).resizableImageWithCapInsets({2, 3, 1, 2}, Mode::tile);
    EXPECT_TRUE(image.isResizable());
    auto filled = drawn(image, 29, 25);
    auto sourceOf = [](int place, int start, int middle, int end, int length) {
        if (place < start) return place;
        if (place >= length - end) return start + middle + place - (length - end);
        return start + (place - start) % middle;
    };
    for (int y = 0; y < 25; ++y)
        for (int x = 0; x < 29; ++x)
            ASSERT_EQ(at(filled, x, y), labelled(sourceOf(x, 3, 5, 2, 29), sourceOf(y, 2, 6, 1, 25)))
                << x << ", " << y;
    // Smaller than the picture: the caps stay whole and the middle is cut.
    auto small = drawn(image, 7, 4);
    EXPECT_EQ(at(small, 2, 1), labelled(2, 1));
    EXPECT_EQ(at(small, 4, 2), labelled(4, 2));
    EXPECT_EQ(at(small, 6, 3), labelled(9, 8));
}

TEST(ResizableImage, StretchesBetweenItsCaps) {
    auto image =
        UIImage(bitmapOf(10, 9, labelled), 2).resizableImageWithCapInsets({1, 1.5, 0.5, 1}, Mode::stretch);
    auto filled = drawn(image, 20, 10, 2);  // 40 × 20 pixels
    for (int x = 0; x < 3; ++x) EXPECT_EQ(at(filled, x, 0), labelled(x, 0));
    for (int x = 0; x < 2; ++x) EXPECT_EQ(at(filled, 38 + x, 19), labelled(8 + x, 8));
    for (int x = 4; x < 38; ++x) {
        EXPECT_GE(at(filled, x, 0)[0], at(filled, x - 1, 0)[0]);  // five columns spread over 35
        EXPECT_NEAR(at(filled, x, 0)[0], std::clamp((x - 3 + 0.5) / 7 - 0.5, 0.0, 4.0) * 10 + 30, 0.51);
    }
}

TEST(ResizableImage, ShrinksCapsThatDoNotFit) {
    auto image = UIImage(bitmapOf(20, 20, [](int x, int) {
        return x < 8 ? Pixel{255, 0, 0, 255} : x < 16 ? Pixel{0, 255, 0, 255} : Pixel{0, 0, 255, 255};
    }));
    // 8 and 4 pixels of cap on 6: two thirds are the left one's, and nothing is left for the middle.
    auto narrow = drawn(image.resizableImageWithCapInsets({0, 8, 0, 4}, Mode::tile), 6, 20);
    for (int x = 0; x < 6; ++x)
        EXPECT_EQ(at(narrow, x, 10), (x < 4 ? Pixel{255, 0, 0, 255} : Pixel{0, 0, 255, 255}));
    // Caps as wide as the picture, or wider, still leave a column to repeat: no gap opens.
    for (double cap : {10.0, 1000.0, HUGE_VAL})
        for (auto mode : {Mode::tile, Mode::stretch}) {
            auto wide = drawn(image.resizableImageWithCapInsets({cap, cap, cap, cap}, mode), 50, 50);
            for (int x = 0; x < 50; ++x) EXPECT_EQ(at(wide, x, 25)[3], 255) << cap;
        }
    auto dot = UIImage(bitmapOf(1, 1, labelled)).resizableImageWithCapInsets({5, NAN, -5, 5}, Mode::tile);
    EXPECT_EQ(at(drawn(dot, 9, 9), 8, 8), labelled(0, 0));
}

}  // namespace
}  // namespace qv
