// Blur, ghost, glitch, interstellar, television, noise, slice lines, materials and cards: that they are
// neutral and repeat, when what happens, and where it is seen.

#include "QVFilterCore/QVClipTime.h"
#include "QVFilterExtension/MTIFilters/Effect/Blur/QVBlurMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Retro/QVTVMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Split/QVSliceLineMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Stylize/QVSelfAdaptingMaterialMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

Picture frameOf(QVEffectMTIFilter& filter, const MTIImage& input, float strength, double time) {
    filter.setInputImage(input);
    filter.setEffectValue(strength);
    filter.setITime(time);
    return render(filter.outputImage());
}

constexpr double kNoPeriod = 0;
constexpr std::pair<const char*, double> kEffects[] = {
    {"QVBlurMTIFilter", 4},           {"QVGhostMTIFilter", 3.2},
    {"QVGlitchMTIFilter", kNoPeriod}, {"QVInterstellarMTIFilter", 5},
    {"QVTVMTIFilter", kNoPeriod},     {"QVNoiseMTIFilter", kNoPeriod},
    {"QVSliceLineMTIFilter", 0},      {"QVSelfAdaptingMaterialMTIFilter", 8},
};

TEST(CompositeEffects, NothingAtNoStrengthAndTheSameAfterAPeriod) {
    const MTIImage scene = sceneImage(120, 68);
    const Picture before = render(scene);
    for (const auto& [name, period] : kEffects) {
        SCOPED_TRACE(name);
        const auto effect = makeEffect(name);
        for (const double time : {0.0, 0.13, 1.9, 5.5})
            EXPECT_TRUE(matches(frameOf(*effect, scene, 0, time), before, 1.6 / 255)) << time;
        const Picture early = frameOf(*effect, scene, 1, 0.7);
        EXPECT_GT(meanDifference(early, frameOf(*effect, scene, 1, 1.6)), 0.004) << "it moves";
        if (period > 0) {
            EXPECT_TRUE(matches(frameOf(*effect, scene, 1, 0.7 + 2 * period), early, 2.0 / 255));
            // Up to the period's end and past it there is no jump.
            const Picture last = frameOf(*effect, scene, 1, period - 0.002);
            EXPECT_LT(meanDifference(last, frameOf(*effect, scene, 1, period + 0.002)), 0.01);
        }
    }
}

TEST(TimeCycle, CountsOnBeforeZeroAndKnowsWhatIsNoTime) {
    const QVTimeCycle cycle = timeCycleAt(-0.5, 2);
    EXPECT_EQ(cycle.number, -1);
    EXPECT_EQ(cycle.part, 0.75);
    EXPECT_EQ(cycle.wrappedNumber(), 4095);
    EXPECT_EQ(timeCycleAt(8195, 1).wrappedNumber(), 3);
    for (const auto& [seconds, period] : {std::pair{NAN, 1.0}, {INFINITY, 1.0}, {1.0, 0.0}, {1.0, -2.0}})
        EXPECT_FALSE(timeCycleAt(seconds, period).isValid) << seconds << " " << period;
}

TEST(QVBlurMTIFilter, MakesADiscOfALight) {
    const auto blur = makeEffect<QVBlurMTIFilter>("QVBlurMTIFilter");
    const MTIImage light = MTIImage::imageWithBitmap(makeBitmap(400, 400, [](int x, int y) {
        const float level = std::abs(x - 200) < 5 && std::abs(y - 200) < 5 ? 1.0f : 0.1f;
        return Pixel{level, level, level, 1};
    }));
    // 0.045 of 400 at full strength: 18 pixels, about a light of 10; two seconds on, 0.3 of it.
    const Picture open = frameOf(*blur, light, 1, 0), nearlySharp = frameOf(*blur, light, 1, 2);
    EXPECT_EQ(QVBlurMTIFilter::defocus(0), 1);
    EXPECT_NEAR(QVBlurMTIFilter::defocus(2), 0.3, 1e-12);
    for (const auto& [dx, dy] : {std::pair{20, 0}, {-14, 14}, {0, -20}}) {
        EXPECT_GT(open.at(200 + dx, 200 + dy)[0], 0.3f) << dx << " " << dy;
        EXPECT_NEAR(nearlySharp.at(200 + dx, 200 + dy)[0], 0.1f, 0.03f) << dx << " " << dy;
        EXPECT_NEAR(open.at(200 + 2 * dx, 200 + 2 * dy)[0], 0.1f, 0.03f) << "beyond the disc";
    }
}

TEST(QVTVMTIFilter, IsSwitchedOnChangesChannelsAndIsSwitchedOff) {
    const auto at = [](double seconds) { return QVTVMTIFilter::programmeAt(seconds); };
    EXPECT_LT(at(0).width, 0.02);
    EXPECT_GT(at(0.15).width, 0.99);
    EXPECT_LT(at(0.15).height, 0.01) << "a line";
    EXPECT_NEAR(at(0.325).height, 0.006 + 0.994 / 2, 1e-9) << "half open";
    EXPECT_EQ(at(0.325).flash, 1 - 0.05 * 0.05 * (3 - 2 * 0.05)) << "a twentieth of its settling";
    for (const double second : {0.9, 1.9, 2.5, 3.5, 4.1, 5.3}) {
        EXPECT_EQ(at(second).height, 1) << second;
        EXPECT_EQ(at(second).trouble, 0) << second;
        EXPECT_EQ(at(second).channel, second < 2 ? 0 : second < 3.6 ? 1 : 2) << second;
        EXPECT_EQ(at(second - 600).channel, at(second).channel) << "before time 0";
    }
    EXPECT_GT(at(2.1).trouble, 0.7);
    EXPECT_LT(at(5.56).height, 0.01);
    EXPECT_EQ(at(5.9).height, 0);
    EXPECT_EQ(at(INFINITY).height, 1);
    const auto tv = makeEffect("QVTVMTIFilter");
    const Picture off = frameOf(*tv, sceneImage(96, 54), 0.5, 5.95);
    EXPECT_TRUE(matchesPixels(off, 0, [](int, int) { return Pixel{0, 0, 0, 1}; }));
}

TEST(QVSliceLineMTIFilter, PiecesSlipOneAfterAnotherAndComeBack) {
    const auto slices = makeEffect("QVSliceLineMTIFilter");
    const auto slips = [&](double time) {
        slices->setITime(time);
        return uniform<MTIVector>(slices->parameters(), "slip");
    };
    for (int i = 0; i < 3; ++i) {
        // 0.08 s after its strike a cut has slipped by 1 − 1/e.
        const MTIVector now = slips(QVSliceLineMTIFilter::kStrikes[i] + 0.08);
        EXPECT_NEAR(now[std::size_t(i)], 1 - std::exp(-1.0), 1e-6);
        EXPECT_EQ(i < 2 ? now[std::size_t(i) + 1] : 0, 0);
        EXPECT_NEAR(slips(2.5 * 4 + 1.9)[std::size_t(i)], 0.5, 1e-3) << "half of the way back";
    }
    const MTIImage scene = sceneImage(120, 68);
    EXPECT_TRUE(matches(frameOf(*slices, scene, 1, 2.45), render(scene), 0.02)) << "together again";
}

TEST(QVGlitchMTIFilter, StandsForATwelfthOfASecond) {
    const auto glitch = makeEffect("QVGlitchMTIFilter");
    const MTIImage scene = sceneImage(160, 90);
    EXPECT_TRUE(matches(frameOf(*glitch, scene, 1, 1.001), frameOf(*glitch, scene, 1, 1.08), 0));
    EXPECT_GT(meanDifference(frameOf(*glitch, scene, 1, 1.001), frameOf(*glitch, scene, 1, 1.09)), 0.005);
}

TEST(QVNoiseMTIFilter, IsCoarserInTheDark) {
    const auto noise = makeEffect("QVNoiseMTIFilter");
    const auto spread = [&](float grey) {
        const Picture picture = frameOf(*noise, plainImage(540, 540, {grey, grey, grey, 1}), 0.5f, 1);
        double sum = 0, squares = 0;
        for (std::size_t i = 1; i < picture.values.size(); i += 4) {
            sum += double(picture.values[i]);
            squares += double(picture.values[i]) * double(picture.values[i]);
        }
        const double count = double(picture.values.size()) / 4, mean = sum / count;
        // Black is lifted by half of 0.08, and the rest drawn together by half of 0.09.
        EXPECT_NEAR(mean, double(grey) * (1 - 0.045) + 0.04, 0.02);
        return std::sqrt(squares / count - mean * mean);
    };
    EXPECT_GT(spread(0.2f), 1.5 * spread(0.75f));
}

TEST(QVSelfAdaptingMaterialMTIFilter, TakesAMaterialOfTheHostsAndItsLightFromTheFrame) {
    const auto effect = makeEffect<QVSelfAdaptingMaterialMTIFilter>("QVSelfAdaptingMaterialMTIFilter");
    effect->setLevel(2);
    for (const std::int64_t outside : {4, -1}) {
        effect->setLevel(outside);
        EXPECT_EQ(effect->level(), 2);
    }
    effect->setLevel(3);
    effect->setMaterialImage(plainImage(30, 20, {0.2f, 0.4f, 0.8f, 1}));
    for (const double grey : {0.25, 0.5, 0.75}) {
        const auto level = float(grey);
        const Picture flat = frameOf(*effect, plainImage(90, 60, {level, level, level, 1}), 1, 0);
        // Flat light casts no shadow: the material at 0.16 + 1.1 of the hardened light, and a glint of it.
        const double hard = 0.5 * grey + 0.5 * grey * grey * (3 - 2 * grey),
                     glint = std::max(0.35 * grey - 0.12, 0.0);
        const double light = std::min(glint * glint * 2.2, 0.5);
        EXPECT_NEAR(flat.at(40, 30)[2], 0.8 * (0.16 + 1.1 * hard) + light * (0.4 + 0.6 * 0.8), 0.01) << grey;
        EXPECT_NEAR(flat.at(40, 30)[0], 0.2 * (0.16 + 1.1 * hard) + light * (0.4 + 0.6 * 0.2), 0.01) << grey;
    }
}

TEST(QVSplitBlurFilter, TheCardIsSharpTheGroundBlurred) {
    const auto card = makeEffect("QVSplitBlurFilter");
    const int w = 320, h = 180;
    const Picture source = render(rampsImage(w, h));
    // 0.74 of the frame at half strength, not lifted at time 0.
    const Picture picture = frameOf(*card, rampsImage(w, h), 0.5f, 0);
    for (const auto& [x, y] : {std::pair{160, 90}, {80, 60}, {240, 130}}) {
        const double u = 0.5 + ((x + 0.5) / w - 0.5) / 0.74, v = 0.5 + ((y + 0.5) / h - 0.5) / 0.74;
        EXPECT_NEAR(picture.at(x, y)[0], u, 0.01);
        EXPECT_NEAR(picture.at(x, y)[1], v, 0.01);
    }
    EXPECT_LT(picture.at(8, 90)[1], 0.8f * source.at(8, 90)[1]) << "the ground is darker";
}

}  // namespace
}  // namespace qv::test
