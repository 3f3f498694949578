// Dissolves, glitches, flashes and the torn line: what they hand to their shaders, and what these make of it.

#include <algorithm>
#include <array>

#include "QVFilterCore/QVTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperDivisionFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr Pixel kFirst{0.8f, 0.5f, 0.2f, 1}, kSecond{0.2f, 0.6f, 0.9f, 1};

std::unique_ptr<QVTransitionMTIFilter> transitionOf(std::string_view shortName, const MTIImage& first,
                                                    const MTIImage& second) {
    auto filter = makeEffect<QVTransitionMTIFilter>("QV" + std::string(shortName) + "TransitionMTIFilter");
    filter->setInputImage1(first);
    filter->setInputImage2(second);
    return filter;
}

Picture frameAt(QVTransitionMTIFilter& filter, float progress) {
    filter.setProgress(progress);
    return render(filter.outputImage());
}

float opacityOf(const MTIImage& image) {
    for (const DrawnPass& pass : drawnPasses(image))
        if (pass.function == "MTIOpacity") return uniform<float>(*pass.parameters, "opacity");
    return NAN;
}

TEST(DissolvesAndGlitches, BrightColorDissolveAddsTheClips) {
    const auto filter =
        transitionOf("BrightColorDissolve", plainImage(4, 4, kFirst), plainImage(4, 4, kSecond));
    for (const auto& [progress, first, second] : {std::array{0.f, 1.f, 0.f},
                                                  {0.25f, 1.f, 0.5f},
                                                  {0.5f, 1.f, 1.f},
                                                  {0.75f, 0.5f, 1.f},
                                                  {1.f, 0.f, 1.f}}) {
        const Pixel p = frameAt(*filter, progress).at(2, 2);
        // Where one clip is half there, its share is added and cut, the rest of the other stays.
        for (std::size_t c = 0; c < 3; ++c) {
            const float expected = first * second * std::min(kFirst[c] + kSecond[c], 1.f) +
                                   first * (1 - second) * kFirst[c] + second * (1 - first) * kSecond[c];
            EXPECT_NEAR(p[c], expected, 1.5 / 255) << progress;
        }
    }
    filter->setProgress(0.3f);
    EXPECT_EQ(opacityOf(filter->outputImage()), 0.6f);
    // In single precision, 2 (1 − 0.9f) is another number.
    filter->setProgress(0.9f);
    EXPECT_EQ(opacityOf(filter->outputImage()), 0.20000005f);
}

TEST(DissolvesAndGlitches, BlackAndWhiteDissolveDarkensThenColors) {
    const auto filter = transitionOf("BWDissolve", plainImage(4, 4, kFirst), plainImage(4, 4, kSecond));
    // The luma, nine tenths of the way to where it lies between black at 0.16 and white at 0.7, eased.
    const float soft = 0.2126f * 0.2f + 0.7152f * 0.6f + 0.0722f * 0.9f, t = (soft - 0.16f) / 0.54f;
    const float grey = 0.1f * soft + 0.9f * (3 * t * t - 2 * t * t * t);
    const struct {
        float progress, first, second, color;  ///< opacities of the clips, and how much colour the second has
    } moments[] = {{0, 1, 0, 0},    {0.35f, 1, 0.5f, 0},    {std::nextafter(0.7f, 0.f), 1, 1, 0},
                   {0.7f, 1, 1, 0}, {0.85f, 0.5f, 1, 0.5f}, {1, 0, 1, 1}};
    for (const auto& each : moments) {
        const Pixel p = frameAt(*filter, each.progress).at(1, 1);
        for (std::size_t c = 0; c < 3; ++c) {
            const float second = grey + (kSecond[c] - grey) * each.color;
            const float both = each.first * each.second;
            const float expected = both * std::min(kFirst[c], second) +
                                   each.first * (1 - each.second) * kFirst[c] +
                                   each.second * (1 - each.first) * second;
            EXPECT_NEAR(p[c], expected, 2.0 / 255) << each.progress;
        }
    }
    filter->setProgress(0.8f);  // (1 − 0.800000012) / 0.30000000000000004
    EXPECT_EQ(opacityOf(filter->outputImage()), 0.66666663f);
}

TEST(DissolvesAndGlitches, DissolvesThroughDarkAndLightGoByBrightness) {
    // What a clip loses on its way to black, of what it had, and of the way to white.
    const auto change = [](const char* name, float from, float to) {
        const auto grey = [](float tone) { return plainImage(8, 8, {tone, tone, tone, 1}); };
        const float now = frameAt(*transitionOf(name, grey(from), grey(to)), 0.4f).at(4, 4)[0];
        return (now - from) / (to - from);
    };
    EXPECT_GT(change("DarkDissolve", 0.25f, 0), change("DarkDissolve", 0.8f, 0) + 0.1);
    EXPECT_GT(change("BrightDissolve", 0.8f, 1), change("BrightDissolve", 0.25f, 1) + 0.1);
}

TEST(DissolvesAndGlitches, GlitchesHoldForAStepAndRestAtTheEnds) {
    const MTIImage first = sceneImage(96, 54);
    const MTIImage second = MTIImage::imageWithBitmap(makeBitmap(96, 54, [](int x, int y) {
        return Pixel{float(x % 16) / 16, float(y % 9) / 9, 0.5f, 1};
    }));
    const Picture before = render(first), after = render(second);
    for (const char* name : {"Glitch", "GlitchSimple"}) {
        SCOPED_TRACE(name);
        const auto filter = transitionOf(name, first, second);
        // Fourteen steps: from 7/14 to 8/14, and the first and last to 1/14 and from 13/14.
        const Picture step = frameAt(*filter, 0.505f);
        EXPECT_EQ(frameAt(*filter, 0.565f).values, step.values);
        EXPECT_GT(meanDifference(frameAt(*filter, 0.58f), step), 0.02);
        EXPECT_GT(std::min(meanDifference(step, before), meanDifference(step, after)), 0.02);
        EXPECT_TRUE(matches(frameAt(*filter, 0.07f), before, 0.5 / 255));
        EXPECT_TRUE(matches(frameAt(*filter, 0.93f), after, 0.5 / 255));
        // At another place of the timeline the signal breaks otherwise.
        filter->setTimeRange({{6000, 600}, {600, 600}});
        EXPECT_GT(meanDifference(frameAt(*filter, 0.505f), step), 0.02);
    }
}

TEST(DissolvesAndGlitches, PaperIsTornAlongTheLine) {
    QVPaperDivisionFilter filter;
    for (const auto& [width, height] : {std::pair{640, 360}, {360, 640}}) {
        SCOPED_TRACE(width);
        filter.setInputImage1(plainImage(width, height, {0.1f, 0.3f, 0.1f, 1}));
        filter.setInputImage2(plainImage(width, height, {0.1f, 0.1f, 0.3f, 1}));
        filter.setPointTopVector({0.3f, 0});
        filter.setPointBotVector({0.7f, 1});
        const Picture torn = render(filter.outputImage());
        for (int y = 0; y < height; ++y) {
            // The tear wanders by a thirtieth of the shorter side; its paper is white somewhere in every row.
            const double line = (0.3 + 0.4 * (y + 0.5) / height) * width;
            int paperEnd = -1;
            for (int x = 0; x < width; ++x) {
                const Pixel p = torn.at(x, y);
                if (p[0] > 0.4) paperEnd = x;
                if (x < line - 20 || x > line + 50) {
                    ASSERT_NEAR(p[x < line ? 1 : 2], 0.3, 1.0 / 255) << x << ", " << y;
                }
            }
            ASSERT_NEAR(paperEnd, line, 20) << y;
            // Beside the paper the other piece lies in its shadow.
            ASSERT_LT(torn.at(paperEnd + 4, y)[2], 0.25) << y;
        }
        filter.setPointBotVector(filter.pointTopVector());
        const Picture upright = render(filter.outputImage());
        EXPECT_NEAR(upright.at(2, height - 3)[1], 0.3, 1.0 / 255);
        EXPECT_NEAR(upright.at(width - 2, 3)[2], 0.3, 1.0 / 255);
    }
}

}  // namespace
}  // namespace qv::test
