// How strength and level become uniforms: hand-worked values, and pictures where the geometry is exact.

#include <gmock/gmock.h>

#include <cmath>

#include "QVFilterExtension/MTIFilters/Effect/Distortion/QVFlashWarpMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using testing::ElementsAre;

MTIImage gradient(int width, int height) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int x, int y) {
        return Pixel{float(x) / float(width), float(y) / float(height), float((x * 7 + y * 3) % 32) / 31, 1};
    }));
}

TEST(ParametricEffects, StrengthBecomesTheUniform) {
    struct Case {
        const char* name;
        const char* key;
        float atZero, atHalf, atOne;
    };
    const Case cases[] = {
        {"QVMosaicMTIFilter", "factor", 100, 58, 16},
        {"QVCircleMosaicMTIFilter", "factor", 36, 26, 16},
        {"QVTriangleMosaicMTIFilter", "factor", 36, 26, 16},
        {"QVCenterMagnifyMTIFilter", "magnificationNum", 1, 3.5f, 6},
        {"QVCircleMagnifyMTIFilter", "magnificationNum", 1, 1.5f, 2},
        {"QVSwirlMTIFilter", "angle", 0, 0.15f, 0.3f},
        {"QVSpliteKaleidoscopeMTIFilter", "splitNumber", 1, 10, 19},
        {"QVSplitChangeFilter", "splitNumber", 4, 8, 12},
        {"QVSplitFourFilter", "splitNumber", 2, 2, 2},
        {"QVSplitNineFilter", "splitNumber", 3, 3, 3},
        {"QVGlassBlurMTIFilter", "filterMixDistance", 0, 32.5f, 65},
        {"QVAICopySplitFilter", "splitNumber", 2, 7, 12},
        {"QVAIReputationFilter", "angleValue", 0, 0.5f, 1},
        {"QVAIRGBFilter", "distanceValue", 0, 0.5f, 1},
    };
    for (const Case& c : cases) {
        const auto filter = makeEffect(c.name);
        // Before a host sets anything a filter stands at its class's default strength.
        EXPECT_FLOAT_EQ(uniform<float>(filter->parameters(), c.key), c.atHalf) << c.name;
        filter->setEffectValue(0);
        EXPECT_FLOAT_EQ(uniform<float>(filter->parameters(), c.key), c.atZero) << c.name;
        filter->setEffectValue(1);
        EXPECT_FLOAT_EQ(uniform<float>(filter->parameters(), c.key), c.atOne) << c.name;
    }
    const auto slices = makeEffect("QVSplitChangeFilter");
    slices->setEffectValue(0.49f);  // 7.92 is truncated
    EXPECT_EQ(uniform<float>(slices->parameters(), "splitNumber"), 7);
}

TEST(ParametricEffects, SomeKeepTheirEffectValueAndSomeStoreIt) {
    for (const char* name : {"QVMosaicMTIFilter", "QVCircleMosaicMTIFilter", "QVTriangleMosaicMTIFilter",
                             "QVCenterMagnifyMTIFilter", "QVCircleMagnifyMTIFilter", "QVRGBMTIFilter",
                             "QVScanlineMTIFilter", "QVScanlineMTIFilter2"}) {
        const auto filter = makeEffect(name);
        filter->setEffectValue(0.9f);
        EXPECT_EQ(filter->effectValue(), 0.5f) << name;
    }
    for (const char* name : {"QVSwirlMTIFilter", "QVSpliteKaleidoscopeMTIFilter", "QVSplitChangeFilter",
                             "QVMirrorMTIFilter", "QVGlassBlurMTIFilter"}) {
        const auto filter = makeEffect(name);
        filter->setEffectValue(0.9f);
        EXPECT_EQ(filter->effectValue(), 0.9f) << name;
    }
}

TEST(ParametricEffects, LevelsPickFromTheTableAndOthersAreIgnored) {
    const auto check = [](const char* name, const char* key, std::vector<float> table) {
        const auto filter = makeEffect(name);
        EXPECT_EQ(filter->filterClass().levels(), int(table.size()));
        for (std::size_t i = 0; i < table.size(); ++i) {
            filter->setLevel(std::int64_t(i));
            EXPECT_EQ(uniform<float>(filter->parameters(), key), table[i]) << name;
        }
        for (std::int64_t outside : {std::int64_t(-1), std::int64_t(table.size()), INT64_MIN, INT64_MAX}) {
            filter->setLevel(outside);
            EXPECT_EQ(uniform<float>(filter->parameters(), key), table.back()) << name << " at " << outside;
        }
    };
    check("QVMirrorMTIFilter", "factor", {2, 4, 5});
    check("QVFullMirrorMTIFilter", "factor", {1, 2, 3});

    const auto direction = makeEffect("QVSplitDirectionFilte");
    direction->setLevel(1);
    direction->setLevel(2);
    direction->setLevel(-1);
    EXPECT_EQ(uniform<std::int32_t>(direction->parameters(), "splitDirection"), 1);
    EXPECT_EQ(direction->filterClass().levels(), 2);
}

TEST(ParametricEffects, ScanLinesTurnStrengthIntoAPatternAndItsStrength) {
    struct Case {
        float strength;
        int level;
        float value;
    };
    for (const char* name : {"QVScanlineMTIFilter", "QVScanlineMTIFilter2"}) {
        const auto filter = makeEffect(name);
        for (const Case& c : {Case{0, 0, 0.5f}, Case{0.125f, 0, 0.75f}, Case{0.5f, 1, 0.5f},
                              Case{0.625f, 1, 0.75f}, Case{0.75f, 0, 0}, Case{1, 0, 0.5f}}) {
            filter->setEffectValue(c.strength);
            EXPECT_EQ(uniform<std::int32_t>(filter->parameters(), "level"), c.level) << c.strength;
            EXPECT_FLOAT_EQ(uniform<float>(filter->parameters(), "effectValue"), c.value) << c.strength;
            EXPECT_THAT(keysOf(filter->parameters()), ElementsAre("level", "effectValue"));
        }
    }
}

TEST(ParametricEffects, ColoursPartInThreeLevels) {
    const auto filter = makeEffect("QVRGBMTIFilter");
    filter->setITime(1.5);
    filter->setIsPhoto(true);
    struct Case {
        float strength;
        int level;
        double offset;
    };
    for (const Case& c :
         {Case{0, 0, 0.001}, Case{0.25f, 0, 0.03775}, Case{0.5f, 1, 0.0255}, Case{1, 2, 0.05}}) {
        filter->setEffectValue(c.strength);
        const MTIParameters parameters = filter->parameters();
        EXPECT_EQ(uniform<std::int32_t>(parameters, "level"), c.level);
        EXPECT_NEAR(uniform<float>(parameters, "xOff"), c.offset, 1e-7);
        EXPECT_EQ(uniform<float>(parameters, "iTime"), 1.5f);
        EXPECT_THAT(keysOf(parameters), ElementsAre("iTime", "level", "effectValue", "isPhoto", "xOff"));
    }
}

TEST(ParametricEffects, ConstantUniformsAndTheirOrder) {
    const auto magnify = makeEffect("QVCircleMagnifyMTIFilter");
    magnify->setEffectValue(1);
    const MTIParameters glass = magnify->parameters();
    EXPECT_THAT(keysOf(glass), ElementsAre("magnificationNum", "centerPoint", "radius", "borderColor"));
    EXPECT_EQ(uniform<MTIVector>(glass, "centerPoint"), (MTIVector{0.5f, 0.5f}));
    EXPECT_EQ(uniform<float>(glass, "radius"), 0.5f);
    EXPECT_EQ(uniform<MTIVector>(glass, "borderColor"), (MTIVector{0.1f, 0.5f, 0.5f}));
    EXPECT_EQ(uniform<MTIVector>(makeEffect("QVCenterMagnifyMTIFilter")->parameters(), "centerPoint"),
              (MTIVector{0.1f, 0.2f}));

    const auto shock = makeEffect("QVAIShockFilter");
    EXPECT_THAT(keysOf(shock->parameters()), ElementsAre("amplitude", "period", "filterNumber"));
    EXPECT_EQ(uniform<float>(shock->parameters(), "amplitude"), 1);
    // Three beats a second at no strength, ten at full: the same place in the beat after one of them.
    for (auto [strength, beat] : {std::pair{0.0f, 1.0 / 3}, std::pair{1.0f, 0.1}}) {
        shock->setEffectValue(strength);
        shock->setITime(0.25 * beat);
        const float early = uniform<float>(shock->parameters(), "period");
        shock->setITime(7.25 * beat);
        EXPECT_NEAR(uniform<float>(shock->parameters(), "period"), early, 1e-5);
        shock->setITime(0.75 * beat);
        EXPECT_GT(std::abs(uniform<float>(shock->parameters(), "period") - early), 0.1);
    }
    EXPECT_THAT(keysOf(makeEffect("QVAIRGBFilter")->parameters()),
                ElementsAre("filterNum", "changeFrequency", "distanceValue"));
    EXPECT_THAT(keysOf(makeEffect("QVAIReputationFilter")->parameters()),
                ElementsAre("angleValue", "distanceValue"));

    QVFlashWarpMTIFilter warp;
    warp.setTime(2.25);
    EXPECT_EQ(uniform<float>(warp.parameters(), "iTime"), 2.25f);
    EXPECT_FALSE(warp.filterClass().isSubclassOf(QVEffectMTIFilterClass));
}

TEST(ParametricEffects, TilesMirrorsAndBlocksAreWhereTheyShouldBe) {
    const int w = 96, h = 48;
    const MTIImage input = gradient(w, h);
    const Picture source = render(input);
    const auto rendered = [&](const char* name, int level = 0) {
        const auto filter = makeEffect(name);
        filter->setInputImage(input);
        filter->setLevel(level);
        return render(filter->outputImage());
    };
    const Picture halves = rendered("QVMirrorMTIFilter", 0), quarters = rendered("QVMirrorMTIFilter", 1);
    const Picture four = rendered("QVSplitFourFilter"), nine = rendered("QVSplitNineFilter");
    for (int y = 0; y < h; y += 5) {
        for (int x = 0; x < w; x += 7) {
            EXPECT_LE(difference(halves.at(x, y), source.at(std::min(x, w - 1 - x), y)), 1e-6);
            EXPECT_LE(
                difference(quarters.at(x, y), source.at(std::min(x, w - 1 - x), std::min(y, h - 1 - y))),
                1e-6);
            // Every tile is the same picture.
            EXPECT_LE(difference(four.at(x, y), four.at((x + w / 2) % w, (y + h / 2) % h)), 1e-5);
            EXPECT_LE(difference(nine.at(x, y), nine.at((x + w / 3) % w, y)), 1e-5);
        }
    }
    // A tile is the frame made smaller: the smooth channels are where the frame has them.
    for (int y = 2; y < h / 2 - 2; y += 3) {
        for (int x = 2; x < w / 2 - 2; x += 3) {
            EXPECT_NEAR(four.at(x, y)[0], (2 * x + 0.5) / w, 0.03);
            EXPECT_NEAR(four.at(x, y)[1], (2 * y + 0.5) / h, 0.03);
        }
    }
}

}  // namespace
}  // namespace qv::test
