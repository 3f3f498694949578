#include "QVFilterExtension/MTIFilters/Effect/Film/QVVhsMTIFilter.h"

#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr int kWidth = 640, kHeight = 480;  // a sample of the tape is a pixel here

Picture played(const MTIImage& picture, Pixel tape, float strength = 1) {
    QVVhsMTIFilter filter;
    filter.setInputImage(picture);
    filter.setInputImage2(plainImage(4, 4, tape));
    filter.setEffectValue(strength);
    return render(filter.outputImage());
}

constexpr Pixel kCalm{64 / 255.f, 128 / 255.f, 0, 1};

TEST(QVVhsMTIFilter, LeavesThePictureAtStrength0) {
    const MTIImage scene = sceneImage(kWidth, kHeight);
    EXPECT_TRUE(matches(played(scene, {1, 1, 1, 1}, 0), render(scene), 1.01 / 255));
}

TEST(QVVhsMTIFilter, ColourBleedsToTheRightAndBrightnessHardly) {
    const MTIImage edge = MTIImage::imageWithBitmap(makeBitmap(kWidth, kHeight, [](int x, int) {
        return x < 320 ? Pixel{0.8f, 0.2f, 0.2f, 1} : Pixel{0.3f, 0.3f, 0.3f, 1};
    }));
    const Picture picture = played(edge, kCalm);
    const auto redness = [&](int x) { return picture.at(x, 100)[0] - picture.at(x, 100)[2]; };
    const auto light = [&](int x) {
        const Pixel p = picture.at(x, 100);
        return 0.2126 * p[0] + 0.7152 * p[1] + 0.0722 * p[2];
    };
    EXPECT_NEAR(redness(300), 0.6, 0.01);
    EXPECT_GT(redness(324), 0.2);
    EXPECT_GT(redness(330), 0.05);
    EXPECT_NEAR(redness(334), 0, 0.01);
    EXPECT_LT(redness(319), 0.6);
    EXPECT_NEAR(light(323), 0.3, 0.03);
    EXPECT_NEAR(light(330), 0.3, 0.01);
}

TEST(QVVhsMTIFilter, TheTapeThrowsLinesAddsNoiseAndTakesColour) {
    const MTIImage stripe = MTIImage::imageWithBitmap(makeBitmap(kWidth, kHeight, [](int x, int) {
        return x / 40 == 8 ? Pixel{0.9f, 0.9f, 0.9f, 1} : Pixel{0.1f, 0.1f, 0.1f, 1};
    }));
    // 51 codes above a half: a fifth of the range, a quarter of which is 0.05 of the width, 32 pixels.
    const Picture thrown = played(stripe, {64 / 255.f, 178.5f / 255, 0, 1});
    for (const auto& [x, light] : {std::pair{348, 0.1}, {372, 0.9}, {388, 0.9}, {398, 0.1}})
        EXPECT_NEAR(thrown.at(x, 50)[1], light, 0.03) << x;
    // 51 codes above a quarter are 0.2: 0.48 brighter.
    EXPECT_NEAR(played(stripe, {114.75f / 255, 0.5f, 0, 1}).at(100, 50)[1], 0.1 + 0.48, 0.02);
    const Pixel grey =
        played(plainImage(kWidth, kHeight, {0.9f, 0.3f, 0.2f, 1}), {0.25f, 0.5f, 1, 1}).at(9, 9);
    EXPECT_NEAR(grey[0], 0.2126 * 0.9 + 0.7152 * 0.3 + 0.0722 * 0.2, 0.01);
    EXPECT_NEAR(grey[2], grey[0], 0.01);
    // Only the last lines are bent where the heads switch.
    const Picture calm = played(stripe, kCalm);
    EXPECT_NEAR(calm.at(340, 470)[1], 0.9, 0.04);
    EXPECT_LT(calm.at(325, 479)[1], 0.3);
}

}  // namespace
}  // namespace qv::test
