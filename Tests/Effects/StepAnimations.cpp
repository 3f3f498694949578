// The animations in steps: their tables and easing, where steps meet, and where the picture goes.

#include "QVFilterCore/QVStepsAnimFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Animation = QVStepsAnimFilter;

constexpr const char* kTwoSteps[] = {"QVTwoStepsAnimFilter", "QVSpinFallAnimFilter", "QVFallSpinAnimFilter",
                                     "QVSwingLeftAnimFilter", "QVSwingRightAnimFilter"};
constexpr const char* kThrows[] = {"QVThrowZoomAnimFilter", "QVZoomThrowAnimFilter"};

/// On a clip from 10 to 13 seconds.
std::unique_ptr<Animation> animationOf(std::string_view name, const MTIImage& input = {},
                                       float strength = 0.5f) {
    auto animation = makeEffect<Animation>(name);
    animation->setInputImage(input);
    animation->setEffectValue(strength);
    animation->setStartTime(10);
    animation->setEndTime(13);
    return animation;
}

void moveTo(Animation& animation, double progress) {
    animation.setITime(10 + 3 * progress);
}

Picture frameAt(Animation& animation, double progress) {
    moveTo(animation, progress);
    return render(animation.outputImage());
}

/// x, y, scale and angle of a class that has poses.
std::array<double, 4> poseAt(Animation& animation, double progress) {
    moveTo(animation, progress);
    const auto from = uniform<MTIVector>(animation.parameters(), "poseFrom"),
               to = uniform<MTIVector>(animation.parameters(), "poseTo");
    std::array<double, 4> pose;
    for (std::size_t i = 0; i < 4; ++i)
        pose[i] = double(from[i]) + (double(to[i]) - double(from[i])) *
                                        double(uniform<float>(animation.parameters(), "stepProgress"));
    return pose;
}

double largestChange(const std::array<double, 4>& a, const std::array<double, 4>& b) {
    double largest = 0;
    for (std::size_t i = 0; i < 4; ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

TEST(StepAnimations, StepsEndOnFramesOfThreeSecondsAtThirty) {
    const std::vector<int> two{45, 90}, thrown{6, 12, 20, 25, 30, 45, 50, 90},
        zoomed{7, 14, 22, 29, 37, 45, 50, 90};
    const auto expectFrames = [](const char* name, const std::vector<int>& frames) {
        const std::vector<StepParaValue> steps = animationOf(name)->stepParas();
        ASSERT_EQ(steps.size(), frames.size()) << name;
        for (std::size_t i = 0; i < frames.size(); ++i) EXPECT_EQ(steps[i].end, frames[i] / 90.0) << name;
    };
    for (const char* name : kTwoSteps) expectFrames(name, two);
    expectFrames(kThrows[0], thrown);
    expectFrames(kThrows[1], zoomed);
}

TEST(StepAnimations, EaseAsWorkedOutByHand) {
    // A Bézier's x and y at its parameter t = 0.5, unless something else is said; eases are drawn in straight
    // pieces, a little off the curve between their ends.
    const struct {
        const char* name;
        double progress;
        int step;
        double eased;
    } cases[] = {
        {"QVTwoStepsAnimFilter", 0.0625, 0, 0.5},                // x = t^3, y = 3t^2 - 2t^3
        {"QVSpinFallAnimFilter", 0.5 * 0.008, 0, 0.104},         // t = 0.2
        {"QVTwoStepsAnimFilter", 0.75, 1, 0.125},                // x = 3t^2 - 2t^3, y = t^3
        {"QVSwingLeftAnimFilter", 0.5 + 0.5 * 0.896, 1, 0.512},  // t = 0.8
        {"QVThrowZoomAnimFilter", 0.2 / 15, 0, 0.425},  // x = 3/8 * 0.2 + 1/8 = 0.2, y = 3/8 * 0.8 + 1/8
        {"QVThrowZoomAnimFilter", 1.5 / 15, 1, 0.5},    // symmetric
        {"QVThrowZoomAnimFilter", 1 / 3. + 0.35 / 6, 5,
         0.54875},                                     // x = 3/8 * 0.6 + 1/8, y = 3/8 * 1.13 + 1/8
        {"QVThrowZoomAnimFilter", 47.5 / 90, 6, 0.5},  // linear
        {"QVThrowZoomAnimFilter", (50 + 40 * 0.875) / 90, 7, 0.5},       // x = 1 - (1-t)^3, y = 3t^2 - 2t^3
        {"QVZoomThrowAnimFilter", 7 / 90. * 0.5375, 0, 0.5},             // x = 3/8 * 1.1 + 1/8
        {"QVZoomThrowAnimFilter", (7 + 7 * 0.296875) / 90, 1, 0.15625},  // t = 0.25
        {"QVZoomThrowAnimFilter", 41 / 90., 5, 0.5},
        {"QVZoomThrowAnimFilter", 1, 7, 1},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.name) + " at " + std::to_string(each.progress));
        const auto animation = animationOf(each.name);
        moveTo(*animation, each.progress);
        EXPECT_EQ(uniform<std::int32_t>(animation->parameters(), "step"), each.step);
        EXPECT_NEAR(uniform<float>(animation->parameters(), "stepProgress"), each.eased, 5e-4);
    }
    // A shutter of 1/48 s in a linear step of 1/6 s.
    const auto linear = animationOf("QVThrowZoomAnimFilter");
    moveTo(*linear, 47.5 / 90);
    EXPECT_NEAR(uniform<float>(linear->parameters(), "stepMotion"), 0.125, 1e-5);
}

TEST(StepAnimations, PosesMeetWhereStepsMeet) {
    for (const char* name : kThrows) {
        const auto animation = animationOf(name);
        const std::vector<StepParaValue>& steps = animation->stepParas();
        for (std::size_t i = 0; i + 1 < steps.size(); ++i) {
            SCOPED_TRACE(std::string(name) + " step " + std::to_string(i));
            const double end = steps[i].end, d = 1e-5;
            const auto before = poseAt(*animation, end - d), at = poseAt(*animation, end),
                       after = poseAt(*animation, end + d);
            EXPECT_LT(largestChange(before, at), 1e-4);
            EXPECT_LT(largestChange(at, after), 1e-4);
            // Bounces turn round at a speed; all else comes to rest first: per whole animation.
            const bool bounces = std::string_view(name) == "QVThrowZoomAnimFilter" && i < 5;
            const double speed = std::max(largestChange(before, at), largestChange(at, after)) / d;
            EXPECT_LT(speed, bounces ? 5.5 : 1.0);
        }
    }
}

TEST(StepAnimations, RestInTheMiddleIsThePicture) {
    for (const CGSize size : {CGSize{96, 54}, CGSize{54, 96}, CGSize{61, 61}}) {
        const MTIImage input = sceneImage(int(size.width), int(size.height));
        const Picture before = render(input);
        for (const char* name : kThrows) {
            const auto animation = animationOf(name, input);
            for (const double progress : {0.5, 0.52, 0.555})
                EXPECT_TRUE(matches(frameAt(*animation, progress), before, 1e-6)) << name << " " << progress;
        }
        for (const char* name : kTwoSteps) {
            const auto animation = animationOf(name, input);
            EXPECT_LT(meanDifference(frameAt(*animation, 0.5), before), 2e-3) << name;
            EXPECT_LT(meanDifference(frameAt(*animation, 0.499), before), 0.02) << name;
            EXPECT_LT(meanDifference(frameAt(*animation, 0.501), before), 0.02) << name;
        }
    }
}

/// Where in the picture a place of the frame comes from: x and y 0..1.
Pixel placeShown(std::string_view name, double progress, int x, int y) {
    const auto animation = animationOf(name, rampsImage(160, 90));
    return frameAt(*animation, progress).at(x, y);
}

TEST(StepAnimations, MoveAsTheirNamesSay) {
    // Falls in from above: the middle shows what is low in the picture. Falls out downwards.
    EXPECT_GT(placeShown("QVFallSpinAnimFilter", 0.1, 80, 45)[1], 0.6f);
    EXPECT_LT(placeShown("QVSpinFallAnimFilter", 0.75, 80, 45)[1], 0.45f);
    EXPECT_NEAR(placeShown("QVSpinFallAnimFilter", 0.75, 80, 45)[0], 0.5f, 0.03f);
    // Half a turn back, at 0.5 of the way: the left edge shows the right half. The middle stays.
    EXPECT_GT(placeShown("QVSpinFallAnimFilter", 0.0625, 20, 45)[0], 0.6f);
    EXPECT_NEAR(placeShown("QVSpinFallAnimFilter", 0.0625, 80, 45)[0], 0.5f, 0.03f);
    EXPECT_GT(placeShown("QVFallSpinAnimFilter", 0.9375, 20, 45)[0], 0.6f);
    // Swings in from the right, the lower end farther than the upper one, and out to the left.
    EXPECT_LT(placeShown("QVSwingLeftAnimFilter", 0.1, 80, 45)[0], 0.45f);
    EXPECT_GT(placeShown("QVSwingLeftAnimFilter", 0.9, 80, 45)[0], 0.55f);
    for (const double progress : {0.1, 0.4, 0.9})
        EXPECT_NEAR(placeShown("QVSwingRightAnimFilter", progress, 40, 60)[0],
                    1 - placeShown("QVSwingLeftAnimFilter", progress, 119, 60)[0], 0.02);
    EXPECT_LT(placeShown("QVSwingLeftAnimFilter", 0.1, 80, 80)[0],
              placeShown("QVSwingLeftAnimFilter", 0.1, 80, 10)[0]);
    // Thrown in from the left, out to the upper right; zooms about the middle.
    EXPECT_GT(placeShown("QVThrowZoomAnimFilter", 0.02, 80, 45)[0], 0.55f);
    EXPECT_LT(placeShown("QVZoomThrowAnimFilter", 0.85, 80, 45)[0], 0.45f);
    EXPECT_GT(placeShown("QVZoomThrowAnimFilter", 0.85, 80, 45)[1], 0.52f);
    EXPECT_GT(placeShown("QVThrowZoomAnimFilter", 0.95, 20, 45)[0], 0.2f);
    EXPECT_NEAR(placeShown("QVThrowZoomAnimFilter", 0.95, 80, 45)[0], 0.5f, 0.01f);
}

}  // namespace
}  // namespace qv::test
