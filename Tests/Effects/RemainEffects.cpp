// The effects that remain over one end of a clip: their strength over time, and what they show of it.

#include <algorithm>
#include <limits>

#include "Platform/ImageGraph/ImageNode.h"
#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBlurClassFilter.h"
#include "QVFilterExtension/MTIFilters/Animation/Remain/QVRemainObscureMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr const char* kOnePass[] = {"QVRemainMosaicMTIFilter", "QVRemainMBlurMTIFilter",
                                    "QVRemainMataMTIFilter",   "QVRemainBlackWhiteMTIFilter",
                                    "QVRemainWhiteMTIFilter",  "QVRemainBlackMTIFilter"};

struct Moment {
    double start, end, time;
    std::vector<double> settings;
    int level = 0;
};

void set(QVBaseRemainMTIFilter& filter, const Moment& moment) {
    filter.setStartTime(moment.start);
    filter.setEndTime(moment.end);
    filter.setITime(moment.time);
    filter.setExtractValues(moment.settings);
    filter.setLevel(moment.level);
}

double strengthAt(QVBaseRemainMTIFilter& filter, const Moment& moment) {
    set(filter, moment);
    return filter.mixStrength();
}

TEST(RemainEffects, FollowHandWorkedCurves) {
    QVBaseRemainMTIFilter base;
    QVBlurClassFilter blur;
    const struct {
        QVBaseRemainMTIFilter& filter;
        Moment moment;
        double strength;
    } cases[] = {
        // Ten seconds: changes from 0 to 7.8.
        {base, {0, 10, 0, {0}}, 0},
        {base, {0, 10, 3.9, {0}}, 0.5},
        {base, {0, 10, 7.8, {0}}, 1},
        {base, {0, 10, 9.5, {0}}, 1},
        {base, {0, 10, -0.1, {0}}, 1},
        // The same the other way: clear until 2.2, then down to the trace that goes at once.
        {base, {0, 10, 2.2, {0}, 1}, 1},
        {base, {0, 10, 6.1, {0}, 1}, 0.5},
        {base, {0, 10, 9.58, {0}, 1}, 1 - 7.38 / 7.8},
        {base, {0, 10, 9.62, {0}, 1}, 0},
        {base, {0, 10, 10.5, {0}, 1}, 0},
        {base, {0, 10, 6.1, {0}, -3}, 0.5},
        // 1.2 * 0.75 = 0.9 held, 1.5 - 0.75 clear: from 5.9 to 14.25.
        {base, {5, 15, 5.9, {0.75}}, 0},
        {base, {5, 15, 10.075, {0.75}}, 0.5},
        {base, {5, 15, 14.25, {0.75}}, 1},
        // Two seconds: two thirds of the clear time; 0.24 of the clip held, clear from 1.
        {base, {0, 2, 0.5 * (2 - 2.2 * 2 / 3), {0}}, 0.5},
        {base, {0, 2, 0.48, {0.5}}, 0},
        {base, {0, 2, 0.74, {0.5}}, 0.5},
        {base, {0, 2, 1.0, {0.5}}, 1},
        // Blurs: 2.5 clear, and 0.17 of the clip held.
        {blur, {0, 10, 3.75, {0}}, 0.5},
        {blur, {0, 2, 0.34, {0.5}}, 0},
        {blur, {0, 2, 0.67, {0.5}}, 0.5},
        {blur, {0, 2, 0.04 * 2 + 0.5 * (2 - 2.0 * 2 / 3 - 0.08), {0.25}}, 0.5},
    };
    for (const auto& each : cases) {
        const Moment& m = each.moment;
        EXPECT_NEAR(strengthAt(each.filter, m), each.strength, 2e-7)
            << m.start << ".." << m.end << " at " << m.time << " setting " << m.settings[0] << " level "
            << m.level;
    }
}

TEST(RemainEffects, ReadOneSettingAndBearAny) {
    QVBaseRemainMTIFilter filter;
    const double half = strengthAt(filter, {0, 10, 3, {0.5}});
    EXPECT_GT(half, 0.1);
    for (const std::vector<double>& settings :
         {std::vector<double>{}, {kNaN, 0.1}, {0.5, 9, kNaN, 4, 4, 4, 4, 4}, {1e300}})
        EXPECT_EQ(strengthAt(filter, {0, 10, 3, settings}), half) << settings.size();
    // The pictures at any time are swept; these are settings that no range holds.
    for (const double setting : {-50.0, 50.0}) {
        for (const double time : {0.0, 3.0, 10.0}) {
            const double strength = strengthAt(filter, {0, 10, time, {setting}});
            EXPECT_TRUE(strength >= 0 && strength <= 1) << strength << " of " << setting << " at " << time;
        }
    }
}

TEST(RemainEffects, BlurByTheFramesShorterSide) {
    QVRemainObscureMTIFilter filter;
    set(filter, {0, 10, 3.75, {0}});  // half
    for (const auto& [size, radius] :
         {std::pair{CGSize{1280, 720}, 12.5f}, {CGSize{360, 640}, 6.25f}, {CGSize{3840, 2160}, 37.5f}}) {
        filter.setInputImage(MTIImage::initWithColor({1, 0, 0, 1}, false, size));
        const MTIImage output = filter.outputImage();
        const auto* blur = std::get_if<GaussianBlurPass>(&output.node()->operation);
        ASSERT_TRUE(blur);
        EXPECT_EQ(blur->radius, radius);
    }
}

TEST(RemainEffects, ClearFromTheFullEffectToThePicture) {
    const MTIImage scene = sceneImage(288, 162);
    const Picture input = render(scene);
    for (const char* name : kOnePass) {
        const auto filter = makeEffect<QVBaseRemainMTIFilter>(name);
        filter->setInputImage(scene);
        const auto frame = [&](double time) {
            set(*filter, {0, 10, time, {0}});
            return render(filter->outputImage());
        };
        EXPECT_TRUE(matches(frame(9), input, 0.5 / 255)) << name;
        double before = INFINITY;
        for (const double time : {0.0, 2.5, 5.0, 6.6}) {
            const double now = meanDifference(frame(time), input);
            EXPECT_LT(now, 0.99 * before) << name << " at " << time;
            before = now;
        }
    }
}

TEST(RemainEffects, ShowWhatTheirNamesSay) {
    const MTIImage scene = sceneImage(120, 72);
    const auto fullEffect = [&](std::string_view name, const MTIImage& input) {
        const auto filter = makeEffect<QVBaseRemainMTIFilter>(name);
        filter->setInputImage(input);
        set(*filter, {0, 10, 0, {0}});
        return render(filter->outputImage());
    };
    const Picture white = fullEffect("QVRemainWhiteMTIFilter", scene);
    EXPECT_TRUE(matches(white, render(plainImage(120, 72, {1, 1, 1, 1})), 0.5 / 255));
    const Picture black = fullEffect("QVRemainBlackMTIFilter", scene);
    EXPECT_TRUE(matches(black, render(plainImage(120, 72, {0, 0, 0, 1})), 0.5 / 255));

    const Picture grey = fullEffect("QVRemainBlackWhiteMTIFilter", scene);
    EXPECT_TRUE(matchesPixels(grey, 1e-3, [&](int x, int y) {
        const Pixel p = grey.at(x, y);
        return Pixel{p[1], p[1], p[1], 1};
    }));
    const Picture matte = fullEffect("QVRemainMataMTIFilter", scene);
    EXPECT_TRUE(matches(matte, black, 0.15)) << "a closed matte is dark";
    // 24 blocks of 3 pixels across the shorter side, laid out from the middle.
    const Picture mosaic = fullEffect("QVRemainMosaicMTIFilter", scene);
    EXPECT_TRUE(matchesPixels(mosaic, 0, [&](int x, int y) { return mosaic.at(x / 3 * 3, y / 3 * 3); }));

    // A smear of 65/720 of the shorter side to the sides only.
    const MTIImage edges = MTIImage::imageWithBitmap(makeBitmap(400, 288, [](int x, int y) {
        return Pixel{x < 200 ? 0.0f : 1.0f, y % 8 < 4 ? 0.0f : 1.0f, 0.5f, 1};
    }));
    const Picture sharp = render(edges), smeared = fullEffect("QVRemainMBlurMTIFilter", edges);
    double widest = 0, ramp = 0;
    for (int x = 0; x < 400; ++x) {
        double mean = 0;
        for (int y = 0; y < 288; ++y) {
            mean += smeared.at(x, y)[0] / 288;
            ASSERT_NEAR(smeared.at(x, y)[1], sharp.at(x, y)[1], 1e-3);
        }
        ramp = std::max(ramp, std::abs(mean - std::clamp((x + 0.5 - 200) / 26 + 0.5, 0.0, 1.0)));
        if (mean > 0.001 && mean < 0.999) widest = std::max(widest, std::abs(x + 0.5 - 200));
    }
    EXPECT_LT(ramp, 0.04);
    EXPECT_NEAR(widest, 13, 2);
}

}  // namespace
}  // namespace qv::test
