// Zooms over a clip: how near they are when, and where they roll to.

#include "QVFilterExtension/MTIFilters/Animation/Zoom/QVJumpZoomInEffectMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Animation/Zoom/QVRollZoomInEffectMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Effect = QVProgressBasedEffectMTIFilter;

std::unique_ptr<Effect> zoomOf(std::string_view name, const MTIImage& input, float strength) {
    auto effect = makeEffect<Effect>(name);
    effect->setInputImage(input);
    effect->setStartTime(10);
    effect->setEndTime(14);
    effect->setEffectValue(strength);
    return effect;
}

Picture frameAt(Effect& effect, double progress) {
    effect.setITime(10 + 4 * progress);
    return render(effect.outputImage());
}

/// How much nearer a picture of horizontal and vertical ramps is.
double nearness(const Picture& picture) {
    const int w = picture.width, h = picture.height;
    const double across = double(picture.at(3 * w / 4, h / 2)[0] - picture.at(w / 4, h / 2)[0]);
    const double down = double(picture.at(w / 2, 3 * h / 4)[1] - picture.at(w / 2, h / 4)[1]);
    EXPECT_NEAR(across, down, 0.01) << "stretched";
    return 0.5 / across;
}

TEST(ClipZooms, SlowOnesMoveByEvenFactors) {
    const MTIImage input = rampsImage(240, 136);
    for (const float strength : {0.3f, 1.0f}) {
        const auto in = zoomOf("QVSlowZoomInEffectMTIFilter", input, strength);
        const auto out = zoomOf("QVSlowZoomOutEffectMTIFilter", input, strength);
        const double farthest = nearness(frameAt(*in, 1));
        EXPECT_NEAR(farthest, 1 + 0.6 * double(strength), 0.02);
        for (const double progress : {0.0, 0.25, 0.5, 0.8}) {
            EXPECT_NEAR(nearness(frameAt(*in, progress)), std::pow(farthest, progress), 0.02);
            EXPECT_NEAR(nearness(frameAt(*out, progress)), std::pow(farthest, 1 - progress), 0.02);
        }
    }
}

TEST(ClipZooms, TheJumpIsTheSlowZoomsEnd) {
    const MTIImage input = sceneImage(80, 45);
    const auto slow = zoomOf("QVSlowZoomInEffectMTIFilter", input, 0.5f);
    const auto jump = zoomOf("QVJumpZoomInEffectMTIFilter", input, 0.5f);
    const Picture end = frameAt(*slow, 1);
    for (const double progress : {-3.0, 0.0, 0.5, 1.0})
        EXPECT_TRUE(matches(frameAt(*jump, progress), end, 0)) << progress;
}

TEST(ClipZooms, TheRollEasesInAndOut) {
    const auto roll = zoomOf("QVRollZoomInEffectMTIFilter", {}, 1);
    for (const auto& [base, eased] : {std::pair{0.0, 0.0f}, {0.25, 0.0625f}, {0.5, 0.5f}, {0.75, 0.9375f}}) {
        roll->setITime(10 + 4 * base);
        EXPECT_FLOAT_EQ(roll->progress(), eased);
    }
}

TEST(ClipZooms, TheRollTurnsAsItsLevelSays) {
    const MTIImage input = rampsImage(120, 120);
    // The direction in which red grows, degrees clockwise from the horizontal.
    const auto turn = [](const Picture& p) {
        const double right = p.at(70, 60)[0] - p.at(50, 60)[0], down = p.at(60, 70)[0] - p.at(60, 50)[0];
        return std::atan2(down, right) * 180 / M_PI;
    };
    const auto roll = zoomOf("QVRollZoomInEffectMTIFilter", input, 1);
    for (const auto& [level, first, last] : {std::tuple{0, 0.0, 40.0}, {1, 0.0, -40.0}, {2, 40.0, 0.0}}) {
        roll->setLevel(level);
        EXPECT_NEAR(turn(frameAt(*roll, 0)), first, 3) << level;
        EXPECT_NEAR(turn(frameAt(*roll, 0.5)), (first + last) / 2, 3) << level;
        EXPECT_NEAR(turn(frameAt(*roll, 1)), last, 3) << level;
    }
}

TEST(ClipZooms, TheRollUncoversNoCorner) {
    for (const auto& [width, height] : {std::pair{160, 90}, {90, 160}, {120, 120}}) {
        const MTIImage framed = MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int x, int y) {
            const bool border = x == 0 || y == 0 || x == width - 1 || y == height - 1;
            return Pixel{border ? 1.0f : 0.0f, 0, 0, 1};
        }));
        const Picture inside = render(plainImage(width, height, {0, 0, 0, 1}));
        const auto roll = zoomOf("QVRollZoomInEffectMTIFilter", framed, 1);
        for (const int level : {0, 1, 2}) {
            roll->setLevel(level);
            for (const double progress : {0.5, 0.7, 1.0}) {
                EXPECT_TRUE(matches(frameAt(*roll, progress), inside, 0.01)) << level << " " << progress;
            }
        }
    }
}

}  // namespace
}  // namespace qv::test
