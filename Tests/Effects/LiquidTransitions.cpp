// The transitions that distort the picture: what their passes are told and in which order they run, and that
// they cut, start and come to rest as they should. The expected values lie on the easing curves at the curve
// parameter one half, where a coordinate is 0.375 (c1 + c2) + 0.125 of its two control values, unless a
// comment says otherwise.

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include "QVFilterCore/QVTransitionMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Transition = QVTransitionMTIFilter;

struct Pass {
    std::string function;
    std::vector<MTIParameters::Entry> parameters;
};

/// The kernel passes behind an image, first to last.
std::vector<Pass> passesOf(const MTIImage& image) {
    std::vector<Pass> passes;
    for (const ImageNode* node : evaluationOrder(image)) {
        const auto* pass = std::get_if<KernelPass>(&node->operation);
        if (!pass) continue;
        passes.push_back({pass->kernel->fragmentFunctionDescriptor().name, {}});
        for (const auto& entry : pass->parameters) passes.back().parameters.push_back(entry);
    }
    return passes;
}

double numberOf(const MTIValue& value) {
    return std::visit(
        [](const auto& v) {
            if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(v)>>)
                return double(v);
            else
                return double(NAN);
        },
        value);
}

/// How far the pieces that eases are drawn in may lie from the smooth curves, on which values here are worked
/// out.
constexpr double kPieces = 1e-3;

void expectPasses(const std::vector<Pass>& actual, const std::vector<Pass>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(expected[i].function);
        EXPECT_EQ(actual[i].function, expected[i].function);
        ASSERT_EQ(actual[i].parameters.size(), expected[i].parameters.size());
        for (std::size_t k = 0; k < expected[i].parameters.size(); ++k) {
            const auto& [name, value] = expected[i].parameters[k];
            EXPECT_EQ(actual[i].parameters[k].first, name);
            EXPECT_EQ(actual[i].parameters[k].second.index(), value.index()) << name << ": its type";
            EXPECT_NEAR(numberOf(actual[i].parameters[k].second), numberOf(value), kPieces) << name;
        }
    }
}

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
    return filter;
}

constexpr float kJustBeforeHalf = 0.49999997f;

TEST(LiquidTransitions, TellEachPassItsValuesInOrder) {
    // The first number that the C library draws after srandom(90000 + 89 + 160).
    srandom(90249);
    const float warp = float(random()) / 9999999.0f;
    struct Case {
        const char* name;
        float progress;
        std::vector<Pass> passes;
    };
    const auto blend = [](float p, double alpha) {
        return Pass{"QVTurbulenceBlendMTIFilter", {{"progress", p}, {"alphaChange", alpha}}};
    };
    const auto turbulence = [&](float p, double time) {
        return Pass{"QVTurbulenceTransitionMTIFilter",
                    {{"progress", p}, {"iTime", time}, {"randomMaxWarp", warp}}};
    };
    const auto mirror = [](float number, float distance) {
        return Pass{"QVFishEyeMirrorFilter", {{"mirrorNum", number}, {"distance", distance}}};
    };
    const auto stretch = [](float p, float parted) {
        return Pass{"QVLiquidStretchFilter", {{"progress", p}, {"RGBSeperate", parted}}};
    };
    const auto optical = [](float p, double rhythm) {
        return Pass{"QVOpticaCompensationFilter", {{"progress", p}, {"transitionRhythm", rhythm}}};
    };
    const auto whirl = [](float p, float weight) {
        return Pass{"QVRotationWarpFilter", {{"progress", p}, {"wrapWeight", weight}}};
    };
    const auto lens = [](float p, float rgb) {
        return Pass{"QVFishEyeLensFilter", {{"progress", p}, {"rgbWeight", rgb}}};
    };
    const auto move = [](float p, float rgb) {
        return Pass{"QVKaleidoscopeMoveFilter", {{"progress", p}, {"rgbWeight", rgb}}};
    };
    const auto progressOnly = [](const char* function, float p) { return Pass{function, {{"progress", p}}}; };
    const auto roll = [&](float number, float distance, float p) {
        return std::vector<Pass>{mirror(number, distance), progressOnly("QVFishEyeRollFilter", p),
                                 progressOnly("QVFishEyeBlurFilter", p)};
    };
    const auto change = [&](float angle, float p) {
        return std::vector<Pass>{{"QVKaleidoscopeRotateFilter", {{"rotateAngle", angle}, {"splitNum", 16.0}}},
                                 progressOnly("QVKaleidoscopeChangeFilter", p)};
    };
    const Pass flip{"QVLiquidStretchFlipFilter", {}};
    const auto rotationBlur = [&](float p) { return progressOnly("QVRotationBlurFilter", p); };
    // Just before the middle the ease in is 1 - 3u² + 2u³ with u the cube root of 6e-8.
    const double u = std::cbrt(5.9604645e-8), nearlyOne = 1 - 3 * u * u + 2 * u * u * u;
    const Case cases[] = {
        {"QVTurbulenceBlendMTIFilter", 0.311875f, {blend(0.311875f, 0.43625)}},
        {"QVTurbulenceBlendMTIFilter", 0.5f, {blend(0.5f, 1)}},
        {"QVTurbulenceBlendMTIFilter", 0.688125f, {blend(0.688125f, 0.43625)}},
        {"QVTurbulenceTransitionMTIFilter", 0, {blend(0, 0), turbulence(0, 0)}},
        {"QVTurbulenceTransitionMTIFilter",
         0.311875f,
         {blend(0.311875f, 0.43625), turbulence(0.218125f, 3.11875)}},
        {"QVTurbulenceTransitionMTIFilter",
         0.688125f,
         {blend(0.688125f, 0.43625), turbulence(0.781875f, 6.88125)}},
        {"QVTurbulenceTransitionMTIFilter", 1, {blend(1, 0), turbulence(1, 10)}},
        {"QVLiquidStretchFilter", 0, {mirror(1, 0), stretch(0, 0)}},
        {"QVLiquidStretchFilter", 0.4f, {mirror(1, -0.25f), stretch(0.4f, 0.5f)}},
        {"QVLiquidStretchFilter", 0.5f, {mirror(1, -0.5f), stretch(0.5f, 1)}},
        {"QVLiquidStretchFilter", 0.6f, {flip, mirror(1, -0.75f), stretch(0.6f, 0.5f)}},
        {"QVLiquidStretchFilter", 1, {flip, mirror(1, -1), stretch(1, 0)}},
        {"QVOpticaCompensationFilter", 0.4325f, {optical(0.4325f, 0.125)}},
        {"QVOpticaCompensationFilter", 0.496f, {optical(0.496f, 1)}},
        {"QVOpticaCompensationFilter", 0.5f, {optical(0.5f, 0.5)}},
        {"QVOpticaCompensationFilter", 0.504f, {optical(0.504f, 0.5)}},
        {"QVOpticaCompensationFilter", 0.66125f, {optical(0.66125f, 0.9375)}},
        {"QVRotationBlurFilter", 0.3f, {rotationBlur(0.3f)}},
        {"QVFishEyeBlurFilter", 0.3f, {progressOnly("QVFishEyeBlurFilter", 0.3f)}},
        {"QVRotationWarpFilter", 0.4375f, {whirl(0.4375f, 0.25f), rotationBlur(0.4375f)}},
        {"QVRotationWarpFilter",
         kJustBeforeHalf,
         {whirl(kJustBeforeHalf, float(nearlyOne / 2)), rotationBlur(kJustBeforeHalf)}},
        {"QVRotationWarpFilter", 0.5f, {whirl(0.5f, 0.5f), rotationBlur(0.5f)}},
        {"QVRotationWarpFilter", 0.5625f, {whirl(0.5625f, 0.75f), rotationBlur(0.5625f)}},
        {"QVFishEyeLensFilter", 0, {lens(0, 0)}},
        {"QVFishEyeLensFilter", 0.21875f, {lens(0.15f, 0.5f)}},
        {"QVFishEyeLensFilter", 0.25f, {lens(0.3f, 1)}},
        {"QVFishEyeLensFilter", 0.34375f, {lens(0.65f, 0.5f)}},
        {"QVFishEyeLensFilter", 1, {lens(1, 0)}},
        {"QVFishEyeRollFilter", 0, roll(1, 0, 0)},
        {"QVFishEyeRollFilter", 0.4375f, roll(2, 0.5f, 0.25f)},
        {"QVFishEyeRollFilter", 0.5f, roll(3, 1, 0.5f)},
        {"QVFishEyeRollFilter", 0.5625f, roll(2, 1.5f, 0.75f)},
        {"QVFishEyeRollFilter", 1, roll(1, 2, 1)},
        {"QVKaleidoscopeChangeFilter", 0, change(0, 0)},
        {"QVKaleidoscopeChangeFilter", 0.131875f, change(0.26375f * 3.14159f, 0.25f)},
        // At the curve parameters 0.83 and 0.85 the value is 0.923126 and 0.93925: the second is beyond 0.93.
        {"QVKaleidoscopeChangeFilter", 0.29920659f, change(0.59841318f * 3.14159f, 0.461563f)},
        {"QVKaleidoscopeChangeFilter", 0.31767719f, change(0.63535438f * 3.14159f, 0.5f)},
        {"QVKaleidoscopeChangeFilter", kJustBeforeHalf, change(3.14159f, 0.5f)},
        // The first curve at its end, sent as a second half.
        {"QVKaleidoscopeChangeFilter", 0.5f, change(3.14159f, 1)},
        {"QVKaleidoscopeChangeFilter", 0.9375f, change(0.125f * 3.14159f, 0.811875f)},
        {"QVKaleidoscopeChangeFilter", 1, change(0, 1)},
        {"QVKaleidoscopeMoveFilter", 0.4375f, {move(0.25f, 0.5f)}},
        {"QVKaleidoscopeMoveFilter", 0.5f, {move(0.5f, 1)}},
        {"QVKaleidoscopeMoveFilter", 0.5625f, {move(0.75f, 0.5f)}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.name) + " at " + testing::PrintToString(each.progress));
        const MTIImage output = transition(each.name, each.progress)->outputImage();
        ASSERT_TRUE(output);
        EXPECT_EQ(output.size(), outgoing().size());
        expectPasses(passesOf(output), each.passes);
    }
}

TEST(LiquidTransitions, CurrentsDependOnTheDurationsValueAlone) {
    const auto warpOf = [](CMTimeRange range) {
        auto filter = transition("QVTurbulenceTransitionMTIFilter", 0.3f);
        filter->setTimeRange(range);
        return numberOf(*filter->parameters().find("randomMaxWarp"));
    };
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::int64_t, unsigned> seeds[] = {
        {1000, 1249}, {-249, 0}, {-250, 0xffffffffu}, {-kMost - 1, 0}, {kMost, 0}, {0xffffffff, 248}};
    for (const auto& [value, seed] : seeds) {
        srandom(seed);
        const float expected = float(random()) / 9999999.0f;
        EXPECT_FLOAT_EQ(float(warpOf({{0, 600}, {value, 600}})), expected) << value;
        EXPECT_FLOAT_EQ(float(warpOf({{77, 25}, {value, 25}})), expected) << value;
    }
    EXPECT_NE(warpOf({{0, 600}, {600, 600}}), warpOf({{0, 600}, {1200, 600}}));
}

constexpr const char* kTransitions[] = {"QVTurbulenceBlendMTIFilter", "QVTurbulenceTransitionMTIFilter",
                                        "QVLiquidStretchFilter",      "QVOpticaCompensationFilter",
                                        "QVRotationWarpFilter",       "QVFishEyeLensFilter",
                                        "QVFishEyeRollFilter",        "QVKaleidoscopeChangeFilter",
                                        "QVKaleidoscopeMoveFilter"};

TEST(LiquidTransitions, StartFromRestAndComeToRest) {
    for (const char* name : kTransitions) {
        auto filter = transition(name, 0);
        const MTIImage second = plainImage(64, 36, {0.9f, 0.3f, 0.1f, 1});
        for (bool ends : {false, true}) {
            // The moving clip is the scene in both directions.
            filter->setInputImage1(ends ? second : outgoing());
            filter->setInputImage2(ends ? outgoing() : second);
            filter->setProgress(ends ? 0.996f : 0.004f);
            EXPECT_LT(meanDifference(render(filter->outputImage()), render(outgoing())), 0.003)
                << name << (ends ? " at the end" : " at the beginning");
        }
    }
}

TEST(LiquidTransitions, CutInTheMiddle) {
    const MTIImage red = plainImage(40, 40, {1, 0, 0, 1}), blue = plainImage(40, 40, {0, 0, 1, 1});
    for (const char* name : kTransitions) {
        const std::string_view text = name;
        if (text.starts_with("QVTurbulence") || text == "QVFishEyeLensFilter") continue;
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
    const Picture star = render(kaleidoscope->outputImage());
    EXPECT_TRUE(matchesPixels(render(kaleidoscope->outputImage()), 0.02,
                              [&](int x, int y) { return star.at(x, 47 - y); }));
    EXPECT_TRUE(matchesPixels(render(kaleidoscope->outputImage()), 0.02,
                              [&](int x, int y) { return star.at(47 - x, y); }));
    EXPECT_TRUE(matchesPixels(render(kaleidoscope->outputImage()), 0.02,
                              [&](int x, int y) { return star.at(y, x); }));
    // Below two of them the picture stays as it is.
    ASSERT_TRUE(setProperty(*kaleidoscope, "splitNumber", 1.0, &error)) << error;
    EXPECT_TRUE(matches(render(kaleidoscope->outputImage()), render(sceneImage(48, 48)), 0.001));
}

}  // namespace
}  // namespace qv::test
