// Masks of pictures and clips, with a network that takes red for a person.

#include "QVPersonMask/PersonMask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "QVPersonMask/PersonMaskSequence.h"
#include "Tests/Media/TemporaryFolder.h"
#include "Tests/Support/TinyNetwork.h"

namespace qv {
namespace {

std::shared_ptr<PersonMask> redFinder(float gain) {
    const TemporaryFolder folder;
    const std::string path = folder / "red.tflite";
    std::ofstream(path, std::ios::binary) << test::redNetwork(gain);
    std::string error;
    const auto finder = PersonMask::create(path, &error);
    EXPECT_TRUE(finder) << error;
    return finder;
}

template <typename Red>
PixelBuffer picture(int width, int height, Red&& red, int alpha = 255) {
    const PixelBuffer result = PixelBuffer::create(PixelFormat::rgba8, width, height);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = result.plane(0).data + std::size_t(y) * result.plane(0).rowBytes;
        for (int x = 0; x < width; ++x) {
            const std::uint8_t pixel[] = {std::uint8_t(red(x, y)), 90, 40, std::uint8_t(alpha)};
            std::copy_n(pixel, 4, row + 4 * x);
        }
    }
    return result;
}

int at(const PixelBuffer& mask, int x, int y) {
    return mask.plane(0).data[std::size_t(y) * mask.plane(0).rowBytes + std::size_t(x)];
}

double mean(const PixelBuffer& mask) {
    double sum = 0;
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x) sum += at(mask, x, y);
    return sum / mask.width() / mask.height();
}

TEST(PersonMask, EdgesAreThePictures) {
    // The network sees 64 pixels; the disc's edge is to lie where it does among 900.
    const auto finder = redFinder(16);
    const auto inside = [](int x, int y) { return std::hypot(x - 431.3, y - 310.8) < 200; };
    const PixelBuffer mask =
        finder->maskOf(picture(900, 640, [&](int x, int y) { return inside(x, y) ? 230 : 20; }));
    ASSERT_TRUE(mask);
    EXPECT_EQ(mask.format(), PixelFormat::gray8);
    int wrong = 0;
    for (int y = 0; y < 640; ++y)
        for (int x = 0; x < 900; ++x) wrong += (at(mask, x, y) > 127) != inside(x, y);
    EXPECT_LT(wrong, 1257 / 4);  // a quarter of a pixel along the circle
    EXPECT_EQ(at(mask, 431, 310), 255);
    EXPECT_EQ(at(mask, 880, 20), 0);
}

TEST(PersonMask, TakesEverySizeFormatAndRotation) {
    const auto finder = redFinder(16);
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 1}, {1, 700}, {5000, 3}, {63, 65}}) {
        const PixelBuffer mask = finder->maskOf(picture(width, height, [](int, int) { return 255; }));
        ASSERT_TRUE(mask) << width << 'x' << height;
        EXPECT_EQ(mask.width(), width);
        EXPECT_EQ(mask.height(), height);
        EXPECT_EQ(mean(mask), 255) << width << 'x' << height;
    }
    const PixelBuffer clear = picture(
        40, 30, [](int, int) { return 255; }, 0);
    EXPECT_EQ(mean(finder->maskOf(clear)), 0) << "what is transparent is no person";

    const PixelBuffer deep = PixelBuffer::create(PixelFormat::i420Bits10, 40, 30);
    for (int plane = 0; plane < 3; ++plane) {
        const PlaneLayout layout = PixelBuffer::planeLayout(deep.format(), plane, 40, 30);
        for (int y = 0; y < layout.height; ++y) {
            auto* row = reinterpret_cast<std::uint16_t*>(deep.plane(plane).data +
                                                         std::size_t(y) * deep.plane(plane).rowBytes);
            std::fill_n(row, layout.width, std::uint16_t(plane == 2 ? 960 : plane == 1 ? 430 : 250));
        }
    }
    EXPECT_EQ(mean(finder->maskOf(deep)), 255) << "red in Y'CbCr";

    // Whichever way it is turned for the network, a mask lies like its picture.
    const PixelBuffer corner = picture(120, 80, [](int x, int y) { return x < 40 && y < 30 ? 255 : 0; });
    const PixelBuffer plain = finder->maskOf(corner);
    EXPECT_GT(at(plain, 10, 10), 250);
    for (int rotation : {90, 180, 270}) {
        const PixelBuffer mask = finder->maskOf(corner, rotation);
        for (const auto& [x, y] : {std::pair{10, 10}, {110, 10}, {10, 70}, {110, 70}})
            EXPECT_NEAR(at(mask, x, y), at(plain, x, y), 2) << rotation;
    }
}

TEST(PersonMask, SaysWhatIsWrong) {
    const TemporaryFolder folder;
    std::string error;
    EXPECT_FALSE(PersonMask::create(folder / "missing", &error));
    EXPECT_THAT(error, testing::EndsWith("/missing' cannot be read"));
    std::ofstream(folder / "text") << "no model at all";
    EXPECT_FALSE(PersonMask::create(folder / "text", &error));
    EXPECT_THAT(error, testing::EndsWith("/text' is not a TensorFlow Lite model"));
    EXPECT_FALSE(redFinder(1)->maskOf(PixelBuffer(), 0, &error));
    EXPECT_THAT(error, testing::HasSubstr("no pixels"));
}

/// Somebody on the left, nobody on the right; in the middle the network may hesitate.
PixelBuffer frame(int red) {
    return picture(48, 32, [&](int x, int) { return x < 16 ? 255 : x < 32 ? red : 0; });
}

/// All masks of frames whose red is given, and what add() and takeMask() say on the way.
std::vector<PixelBuffer> masksOf(const std::vector<int>& reds, int framesAhead) {
    PersonMaskSequence masks(redFinder(64), framesAhead);
    std::vector<PixelBuffer> result;
    const auto take = [&] {
        while (masks.hasMask()) result.push_back(masks.takeMask());
    };
    for (std::size_t i = 0; i < reds.size(); ++i) {
        EXPECT_TRUE(masks.add(frame(reds[i])));
        take();
        EXPECT_EQ(result.size(), std::size_t(std::max(0, int(i) + 1 - framesAhead)));
    }
    masks.finish();
    take();
    return result;
}

double flicker(const std::vector<PixelBuffer>& masks) {
    double most = 0;
    for (std::size_t i = 6; i < masks.size(); ++i)
        most = std::max(most, std::fabs(mean(masks[i]) - mean(masks[i - 1])));
    return most;
}

TEST(PersonMaskSequence, SteadiesWhatIsUncertainAndFollowsWhatMoves) {
    // Two codes around the threshold: by themselves the masks go up and down.
    std::vector<int> trembling;
    for (int i = 0; i < 14; ++i) trembling.push_back(i % 2 ? 129 : 126);
    const auto finder = redFinder(64);
    std::vector<PixelBuffer> single;
    for (int red : trembling)
        single.push_back(finder->maskOf(frame(red)));
    const auto oneWay = masksOf(trembling, 0), bothWays = masksOf(trembling, PersonMaskSequence::kReach);
    ASSERT_EQ(oneWay.size(), trembling.size());
    ASSERT_EQ(bothWays.size(), trembling.size());
    EXPECT_GT(flicker(single), 20);
    EXPECT_LT(flicker(oneWay), flicker(single) / 3);
    EXPECT_LT(flicker(bothWays), flicker(single) / 5);

    std::vector<int> cut(6, 10);
    cut.insert(cut.end(), 6, 250);
    for (int ahead : {0, PersonMaskSequence::kReach}) {
        const auto masks = masksOf(cut, ahead);
        EXPECT_EQ(at(masks[5], 24, 16), 0) << ahead;
        EXPECT_EQ(at(masks[6], 24, 16), 255) << ahead;
    }
}

TEST(PersonMaskSequence, MasksDependOnNearFramesAlone) {
    const std::vector<int> reds{127, 129, 126, 128, 125, 130, 127, 126, 129, 128, 127, 125};
    for (int ahead : {0, 3}) {
        const auto whole = masksOf(reds, ahead), part = masksOf({reds.begin() + 3, reds.end()}, ahead);
        for (std::size_t i = 4; i < part.size(); ++i)
            EXPECT_EQ(mean(part[i]), mean(whole[i + 3])) << ahead << ' ' << i;
    }
}

}  // namespace
}  // namespace qv
