// The effects that beat: when, how strongly, and what they leave of the picture.

#include <limits>

#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVCreasePEMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVWhiteCoverPEMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Effect = QVPeriodicEffectMTIFilter;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr const char* kBeating[] = {
    "QVZoomPEMTIFilter",     "QVGhostPEMTIFilter",    "QVDapPEMTIFilter",        "QVBrightPEMTIFilter",
    "QVAnaglyphPEMTIFilter", "QVColCoverPEMTIFilter", "QVWhiteCoverPEMTIFilter", "QVCreasePEMTIFilter"};
/// Of a beat of 0.6 s, the height.
constexpr double kPeak = 0.072;

Picture frameAt(QVEffectMTIFilter& effect, double time) {
    effect.setITime(time);
    return render(effect.outputImage());
}

TEST(PeriodicEffects, BeatInTheFirstThreeFifthsOfEveryPeriod) {
    Effect effect;
    // Whole milliseconds, so that the remainder is exact; a period's ends and the beat's end are left out.
    for (const int period : {1000, 500, 750, 60000}) {
        effect.setPeriod(period / 1000.0);
        for (int ms = -70001; ms <= 70000; ms += 37) {
            const int part = (ms % period + period) % period;
            if (part == 0 || part * 5 == period * 3) continue;
            ASSERT_EQ(effect.isEffectWithTime(ms / 1000.0), part * 5 < period * 3) << ms << " of " << period;
        }
    }
    effect.setPeriod(1);
    EXPECT_TRUE(effect.isEffectWithTime(0));
    EXPECT_TRUE(effect.isEffectWithTime(1e9 + 0.25));
    EXPECT_FALSE(effect.isEffectWithTime(-1e9 + 0.75));
    for (const double time : {kNaN, kInfinity, -kInfinity})
        EXPECT_FALSE(effect.isEffectWithTime(time)) << time;
    for (const double period : {0.0, -1.0, kNaN}) {
        effect.setPeriod(period);
        EXPECT_FALSE(effect.isEffectWithTime(0.1)) << period;
    }
}

TEST(PeriodicEffects, PulseStrikesFastAndDiesAwaySoftly) {
    for (const double rest : {-0.5, 0.0, 1.0, 1.5, kNaN}) EXPECT_EQ(Effect::pulse(rest), 0) << rest;
    EXPECT_EQ(Effect::pulse(0.12), 1);
    EXPECT_NEAR(Effect::pulse(0.06), 0.75, 1e-12);    // half of the way up: 1 - 1/4
    EXPECT_NEAR(Effect::pulse(0.56), 0.3125, 1e-12);  // half of the way down: 1/8 of 5/2
    double last = 0;
    for (int i = 1; i <= 1000; ++i) {
        const double now = Effect::pulse(i / 1000.0);
        ASSERT_EQ(now > last, i <= 120) << i;
        last = now;
    }
}

TEST(PeriodicEffects, ParametersFollowTheTime) {
    Effect effect;
    effect.setPeriod(2);
    effect.setITime(2 * 7 + 1.2 * 0.56);
    EXPECT_NEAR(uniform<float>(effect.parameters(), "progress"), 0.56, 1e-6);
    EXPECT_NEAR(uniform<float>(effect.parameters(), "pulse"), 0.3125, 1e-6);
    EXPECT_EQ(uniform<float>(effect.parameters(), "beat"), 7);
    // The shutter is open for 1/48 s, and the slope there is -1.5 / 0.88 a beat of 1.2 s.
    EXPECT_NEAR(uniform<float>(effect.parameters(), "pulseMotion"), -1.5 / 0.88 / 1.2 / 48, 1e-4);
    effect.setITime(-1.9);
    EXPECT_EQ(uniform<float>(effect.parameters(), "beat"), 4095) << "the beat before the first";
    EXPECT_NEAR(uniform<float>(effect.parameters(), "progress"), 0.1 / 1.2, 1e-6);
    for (const double rest : {1.3, 1.99, -0.4, kNaN, kInfinity}) {
        effect.setITime(rest);
        for (const char* name : {"progress", "pulse", "pulseMotion"})
            EXPECT_EQ(uniform<float>(effect.parameters(), name), 0) << rest;
    }
}

TEST(PeriodicEffects, RestIsThePictureAndStrengthCounts) {
    const MTIImage input = sceneImage(96, 54);
    const Picture before = render(input);
    for (const char* name : kBeating) {
        SCOPED_TRACE(name);
        const auto effect = makeEffect<Effect>(name);
        effect->setInputImage(input);
        effect->setEffectValue(1);
        for (const double time : {0.0, 0.61, 0.99, 7.8, -0.3, kNaN, kInfinity, -kInfinity})
            EXPECT_TRUE(matches(frameAt(*effect, time), before, 1e-5)) << time;
        EXPECT_LT(meanDifference(frameAt(*effect, 0.5999), before), 1e-3) << "dies away";
        double last = 0.004;
        for (const float strength : {0.15f, 0.5f, 1.f}) {
            effect->setEffectValue(strength);
            const double change = meanDifference(frameAt(*effect, kPeak), before);
            EXPECT_GT(change, 1.15 * last) << strength;
            last = change;
        }
        // A beat at another tempo, and beats before the first, are the same beat.
        const Picture beat = frameAt(*effect, 0.2);
        if (std::string_view(name) != "QVCreasePEMTIFilter") {
            EXPECT_TRUE(matches(frameAt(*effect, -3.8), beat, 2e-3));
        }
    }
}

TEST(QVDapPEMTIFilter, HopsUpSquashesAndHopsAgain) {
    const MTIImage ramp = MTIImage::imageWithBitmap(makeBitmap(64, 256, [](int, int y) {
        return Pixel{0, (float(y) + 0.5f) / 256, 0, 1};
    }));
    const auto effect = makeEffect<Effect>("QVDapPEMTIFilter");
    effect->setInputImage(ramp);
    effect->setEffectValue(1);
    // Where the middle shows a place from below, the picture is above its place.
    const auto above = [&](double progress) { return frameAt(*effect, 0.6 * progress).at(32, 128)[1] - 0.5; };
    // A quarter up, 1.125 times as large about its foot: the middle shows what is (1/2 - 1/4) / 1.125 above
    // the foot.
    EXPECT_NEAR(above(0.21), 0.5 - 0.25 / 1.125, 0.01);
    EXPECT_LT(above(0.48), -0.02) << "flat";
    EXPECT_GT(above(0.66), 0.04);
    EXPECT_LT(above(0.66), 0.4 * above(0.21));
}

TEST(QVAnaglyphPEMTIFilter, PartsRedFromCyanAndSwapsThemEveryOtherBeat) {
    const MTIImage line = MTIImage::imageWithBitmap(makeBitmap(200, 20, [](int x, int) {
        const float v = std::abs(x - 100) < 2 ? 1.f : 0.f;
        return Pixel{v, v, v, 1};
    }));
    const auto effect = makeEffect<Effect>("QVAnaglyphPEMTIFilter");
    effect->setInputImage(line);
    effect->setEffectValue(1);
    effect->setPeriod(10);
    const auto middle = [&](double time, std::size_t component) {
        const Picture picture = frameAt(*effect, time);
        double sum = 0, weighted = 0;
        for (int x = 0; x < 200; ++x) {
            sum += double(picture.at(x, 10)[component]);
            weighted += double(picture.at(x, 10)[component]) * (x + 0.5);
        }
        return weighted / sum;
    };
    // A twentieth of the shorter side, one pixel, each way.
    EXPECT_NEAR(middle(0.72, 0), 100.5 - 1, 0.15);
    EXPECT_NEAR(middle(0.72, 1), 100.5 + 1, 0.15);
    EXPECT_NEAR(middle(0.72, 2), middle(0.72, 1), 1e-4);
    EXPECT_NEAR(middle(10.72, 0), 100.5 + 1, 0.15);
}

TEST(QVColCoverPEMTIFilter, CoversWithItsColour) {
    QVColCoverPEMTIFilter cover;
    EXPECT_EQ(cover.coverCol().hex(), "#000000");
    EXPECT_EQ(QVWhiteCoverPEMTIFilter().coverCol().hex(), "#ffffff");
    cover.setCoverCol({1, 0.5, 0.25});
    cover.setInputImage(sceneImage(64, 36));
    cover.setEffectValue(1);
    EXPECT_TRUE(matches(frameAt(cover, kPeak), render(plainImage(64, 36, {1, 0.5f, 0.25f, 1})), 0.6 / 255));
    // At strength 0.5 the iris stands open in the middle and has closed over the corners; transparent stays
    // transparent.
    cover.setEffectValue(0.5);
    cover.setInputImage(MTIImage::imageWithBitmap(makeBitmap(65, 37, [](int x, int) {
        return Pixel{0, 0, 1, x < 60 ? 1.f : 0.f};
    })));
    const Picture half = frameAt(cover, kPeak);
    EXPECT_EQ(half.at(32, 18), (Pixel{0, 0, 1, 1}));
    EXPECT_EQ(half.at(0, 0), half.at(0, 36));
    EXPECT_NEAR(half.at(0, 0)[2], 0.25, 1e-3);
    EXPECT_EQ(half.at(64, 20), (Pixel{0, 0, 0, 0}));
}

TEST(QVCreasePEMTIFilter, FoldsEachBeatElsewhereAndNothingAtRest) {
    const MTIImage input = sceneImage(61, 33);
    QVCreasePEMTIFilter crease, other;
    for (QVCreasePEMTIFilter* each : {&crease, &other}) each->setInputImage(input);
    crease.setITime(0.7);
    EXPECT_EQ(crease.outputImage(), input) << "the very same image";

    crease.setITime(0.2);
    other.setITime(0.2);
    EXPECT_EQ(crease.outputImage().node()->inputs.at(1), other.outputImage().node()->inputs.at(1))
        << "loaded once for all";
    EXPECT_GT(meanDifference(frameAt(crease, kPeak), frameAt(crease, 1 + kPeak)), 0.01);
}

}  // namespace
}  // namespace qv::test
