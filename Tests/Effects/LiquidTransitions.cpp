// The transitions that distort the picture: what their passes are told and in which order they run, and that
// they cut in the middle. The expected values lie on the easing curves at the curve
// parameter one half, where a coordinate is 0.375 (c1 + c2) + 0.125 of its two control values, unless a
// comment says otherwise.

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <numbers>

#include "QVFilterCore/QVTransitionMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Transition = QVTransitionMTIFilter;

/// What an image's passes are told, first to last.
std::vector<double> numbersOf(const std::vector<DrawnPass>& passes) {
    std::vector<double> numbers;
    for (const DrawnPass& pass : passes) {
        for (const auto& [name, value] : *pass.parameters) {
            const auto* exact = std::get_if<double>(&value);
            numbers.push_back(exact ? *exact : double(std::get<float>(value)));
        }
    }
    return numbers;
}

/// How far the pieces that eases are drawn in may lie from the smooth curves, on which values here are worked
/// out.
constexpr double kPieces = 1e-3;

const MTIImage& outgoing() {
    static const MTIImage image = sceneImage(64, 36);
    return image;
}
const MTIImage& incoming() {
    static const MTIImage image = plainImage(48, 48, {0.1f, 0.2f, 0.9f, 1});
    return image;
}

std::unique_ptr<Transition> transition(std::string_view name, float progress) {
    auto filter = makeEffect<Transition>(name);
    filter->setInputImage1(outgoing());
    filter->setInputImage2(incoming());
    filter->setProgress(progress);
    filter->setTimeRange({{0, 600}, {600, 600}});
    return filter;
}

constexpr float kJustBeforeHalf = 0.49999997f;

TEST(LiquidTransitions, TellEachPassItsValuesInOrder) {
    // The first number that the C library draws after srandom(600 + 89 + 160).
    srandom(849);
    const float warp = float(random()) / 9999999.0f;
    // Just before the middle the ease in is 1 - 3u² + 2u³ with u the cube root of 6e-8.
    const double u = std::cbrt(5.9604645e-8), nearlyOne = 1 - 3 * u * u + 2 * u * u * u, pi = 3.14159;
    struct Moment {
        double progress;
        std::vector<double> numbers;
    };
    const struct {
        const char* name;
        std::vector<std::string> passes;
        std::vector<Moment> moments;
    } cases[] = {
        {"QVTurbulenceBlendMTIFilter",
         {"QVTurbulenceBlendMTIFilter"},
         {{0.311875, {0.311875, 0.43625}}, {0.5, {0.5, 1}}, {0.688125, {0.688125, 0.43625}}}},
        {"QVTurbulenceTransitionMTIFilter",
         {"QVTurbulenceBlendMTIFilter", "QVTurbulenceTransitionMTIFilter"},
         {{0, {0, 0, 0, 0, warp}},
          {0.311875, {0.311875, 0.43625, 0.218125, 3.11875, warp}},
          {0.688125, {0.688125, 0.43625, 0.781875, 6.88125, warp}},
          {1, {1, 0, 1, 10, warp}}}},
        {"QVLiquidStretchFilter",
         {"QVFishEyeMirrorFilter", "QVLiquidStretchFilter"},
         {{0, {1, 0, 0, 0}}, {0.4, {1, -0.25, 0.4, 0.5}}, {0.5, {1, -0.5, 0.5, 1}}}},
        {"QVLiquidStretchFilter",
         {"QVLiquidStretchFlipFilter", "QVFishEyeMirrorFilter", "QVLiquidStretchFilter"},
         {{0.6, {1, -0.75, 0.6, 0.5}}, {1, {1, -1, 1, 0}}}},
        {"QVOpticaCompensationFilter",
         {"QVOpticaCompensationFilter"},
         {{0.4325, {0.4325, 0.125}},
          {0.496, {0.496, 1}},
          {0.5, {0.5, 0.5}},
          {0.504, {0.504, 0.5}},
          {0.66125, {0.66125, 0.9375}}}},
        {"QVRotationWarpFilter",
         {"QVRotationWarpFilter", "QVRotationBlurFilter"},
         {{0.4375, {0.4375, 0.25, 0.4375}},
          {kJustBeforeHalf, {kJustBeforeHalf, nearlyOne / 2, kJustBeforeHalf}},
          {0.5, {0.5, 0.5, 0.5}},
          {0.5625, {0.5625, 0.75, 0.5625}}}},
        {"QVFishEyeLensFilter",
         {"QVFishEyeLensFilter"},
         {{0, {0, 0}}, {0.21875, {0.15, 0.5}}, {0.25, {0.3, 1}}, {0.34375, {0.65, 0.5}}, {1, {1, 0}}}},
        {"QVFishEyeRollFilter",
         {"QVFishEyeMirrorFilter", "QVFishEyeRollFilter", "QVFishEyeBlurFilter"},
         {{0, {1, 0, 0, 0}},
          {0.4375, {2, 0.5, 0.25, 0.25}},
          {0.5, {3, 1, 0.5, 0.5}},
          {0.5625, {2, 1.5, 0.75, 0.75}},
          {1, {1, 2, 1, 1}}}},
        {"QVKaleidoscopeChangeFilter",
         {"QVKaleidoscopeRotateFilter", "QVKaleidoscopeChangeFilter"},
         {{0, {0, 16, 0}},
          {0.131875, {0.26375 * pi, 16, 0.25}},
          // At the curve parameters 0.83 and 0.85 the value is 0.923126 and 0.93925: the second is beyond
          // 0.93.
          {0.29920659, {0.59841318 * pi, 16, 0.461563}},
          {0.31767719, {0.63535438 * pi, 16, 0.5}},
          {kJustBeforeHalf, {pi, 16, 0.5}},
          // The first curve at its end, sent as a second half.
          {0.5, {pi, 16, 1}},
          {0.9375, {0.125 * pi, 16, 0.811875}},
          {1, {0, 16, 1}}}},
        {"QVKaleidoscopeMoveFilter",
         {"QVKaleidoscopeMoveFilter"},
         {{0.4375, {0.25, 0.5}}, {0.5, {0.5, 1}}, {0.5625, {0.75, 0.5}}}},
    };
    for (const auto& each : cases) {
        for (const Moment& moment : each.moments) {
            SCOPED_TRACE(testing::Message() << each.name << " at " << moment.progress);
            const MTIImage output = transition(each.name, float(moment.progress))->outputImage();
            const std::vector<DrawnPass> passes = drawnPasses(output);
            std::vector<std::string> functions;
            for (const DrawnPass& pass : passes) functions.push_back(pass.function);
            EXPECT_EQ(functions, each.passes);
            EXPECT_THAT(numbersOf(passes), testing::Pointwise(testing::DoubleNear(kPieces), moment.numbers));
        }
    }
}

TEST(LiquidTransitions, CurrentsDependOnTheDurationsValueAlone) {
    const auto warpOf = [](CMTimeRange range) {
        auto filter = transition("QVTurbulenceTransitionMTIFilter", 0.3f);
        filter->setTimeRange(range);
        return uniform<float>(filter->parameters(), "randomMaxWarp");
    };
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::int64_t, unsigned> seeds[] = {{1000, 1249},    {-249, 0},  {-250, 0xffffffffu},
                                                       {-kMost - 1, 0}, {kMost, 0}, {0xffffffff, 248}};
    for (const auto& [value, seed] : seeds) {
        srandom(seed);
        const float expected = float(random()) / 9999999.0f;
        EXPECT_FLOAT_EQ(warpOf({{0, 600}, {value, 600}}), expected) << value;
        EXPECT_FLOAT_EQ(warpOf({{77, 25}, {value, 25}}), expected) << value;
    }
}

TEST(LiquidTransitions, CutInTheMiddle) {
    const MTIImage red = plainImage(40, 40, {1, 0, 0, 1}), blue = plainImage(40, 40, {0, 0, 1, 1});
    for (const char* name :
         {"QVLiquidStretchFilter", "QVOpticaCompensationFilter", "QVRotationWarpFilter",
          "QVFishEyeRollFilter", "QVKaleidoscopeChangeFilter", "QVKaleidoscopeMoveFilter"}) {
        auto filter = transition(name, 0);
        filter->setInputImage1(red);
        filter->setInputImage2(blue);
        for (float progress : {0.1f, 0.45f, kJustBeforeHalf, 0.5f, 0.55f, 0.9f}) {
            filter->setProgress(progress);
            EXPECT_TRUE(matches(render(filter->outputImage()), render(progress < 0.5f ? red : blue), 0.01))
                << name << " at " << progress;
        }
    }
}

TEST(LiquidTransitions, FlipMirrorAndKaleidoscopeShowTheRightPlaces) {
    const Picture scene = render(outgoing());
    const auto flip = transition("QVLiquidStretchFlipFilter", 0.3f);
    EXPECT_TRUE(
        matchesPixels(render(flip->outputImage()), 0.001, [&](int x, int y) { return scene.at(63 - x, y); }));

    const auto mirror = transition("QVFishEyeMirrorFilter", 0.3f);
    std::string error;
    // A quarter of the width to the left: what was left of the frame is the picture mirrored.
    ASSERT_TRUE(setProperty(*mirror, "moveDistance", -0.25, &error)) << error;
    EXPECT_TRUE(matchesPixels(render(mirror->outputImage()), 0.001,
                              [&](int x, int y) { return scene.at(x < 16 ? 15 - x : x - 16, y); }));
    // Three copies, each every third pixel of the picture.
    ASSERT_TRUE(setProperty(*mirror, "mirrorNumber", 3.0, &error)) << error;
    ASSERT_TRUE(setProperty(*mirror, "moveDistance", 2.0, &error)) << error;
    const MTIImage even = sceneImage(63, 36);
    mirror->setInputImage1(even);
    const Picture wide = render(even);
    EXPECT_TRUE(matchesPixels(render(mirror->outputImage()), 0.001, [&](int x, int y) {
        const auto fold = [](int at, int length) {
            const int place = 3 * (at % (length / 3)) + 1;
            return at / (length / 3) == 1 ? place : length - 1 - place;
        };
        return wide.at(fold(x, 63), fold(y, 36));
    }));

    // Sixteen mirrors: the same seen upside down, left to right and along the diagonal.
    const auto kaleidoscope = transition("QVKaleidoscopeRotateFilter", 0.3f);
    kaleidoscope->setInputImage1(sceneImage(48, 48));
    // A whole turn of the picture, a quarter of one of the mirrors.
    ASSERT_TRUE(setProperty(*kaleidoscope, "rotateAngle", 2 * std::numbers::pi, &error)) << error;
    const Picture star = render(kaleidoscope->outputImage());
    EXPECT_TRUE(matchesPixels(star, 0.02, [&](int x, int y) { return star.at(x, 47 - y); }));
    EXPECT_TRUE(matchesPixels(star, 0.02, [&](int x, int y) { return star.at(47 - x, y); }));
    EXPECT_TRUE(matchesPixels(star, 0.02, [&](int x, int y) { return star.at(y, x); }));
    // The middle shows it, though it has the end's progress.
    const auto change = transition("QVKaleidoscopeChangeFilter", 0.5f);
    const MTIImage scene48 = sceneImage(48, 48);
    change->setInputImage1(plainImage(48, 48, {1, 0, 0, 1}));
    change->setInputImage2(scene48);
    EXPECT_GT(meanDifference(render(change->outputImage()), render(scene48)), 0.05);
    change->setProgress(0.998f);
    EXPECT_TRUE(matches(render(change->outputImage()), render(scene48), 0.001));
    // Below two of them the picture stays as it is.
    ASSERT_TRUE(setProperty(*kaleidoscope, "splitNumber", 1.0, &error)) << error;
    EXPECT_TRUE(matches(render(kaleidoscope->outputImage()), render(sceneImage(48, 48)), 0.001));
}

}  // namespace
}  // namespace qv::test
