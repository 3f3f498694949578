// The effects of one pass whose uniforms follow from strength and level: hand-worked values, and pictures
// against what their geometry says.

#include <algorithm>
#include <cmath>

#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

TEST(ParametricEffects, StrengthBecomesTheUniform) {
    const struct {
        const char* name;
        const char* key;
        float atZero, atHalf, atOne;
    } cases[] = {
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
    for (const auto& c : cases) {
        const auto filter = makeEffect(c.name);
        for (const auto& [strength, value] : {std::pair{0.0f, c.atZero}, {0.5f, c.atHalf}, {1.0f, c.atOne}}) {
            filter->setEffectValue(strength);
            EXPECT_FLOAT_EQ(uniform<float>(filter->parameters(), c.key), value) << c.name << " " << strength;
        }
    }
    const auto slices = makeEffect("QVSplitChangeFilter");
    slices->setEffectValue(0.49f);  // 7.92 is truncated
    EXPECT_EQ(uniform<float>(slices->parameters(), "splitNumber"), 7);
}

TEST(ParametricEffects, SomeKeepTheirEffectValueAndSomeStoreIt) {
    const std::pair<float, std::vector<const char*>> classes[] = {
        {0.5f,
         {"QVMosaicMTIFilter", "QVCircleMosaicMTIFilter", "QVTriangleMosaicMTIFilter",
          "QVCenterMagnifyMTIFilter", "QVCircleMagnifyMTIFilter", "QVRGBMTIFilter", "QVScanlineMTIFilter",
          "QVScanlineMTIFilter2"}},
        {0.9f,
         {"QVSwirlMTIFilter", "QVSpliteKaleidoscopeMTIFilter", "QVSplitChangeFilter", "QVMirrorMTIFilter",
          "QVGlassBlurMTIFilter"}}};
    for (const auto& [kept, names] : classes) {
        for (const char* name : names) {
            const auto filter = makeEffect(name);
            filter->setEffectValue(0.9f);
            EXPECT_EQ(filter->effectValue(), kept) << name;
        }
    }
}

TEST(ParametricEffects, LevelsPickFromTheTableAndOthersAreIgnored) {
    const auto check = [](const char* name, const char* key, std::vector<float> table) {
        const auto filter = makeEffect(name);
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
}

TEST(ParametricEffects, StrengthChoosesALevelAndWhatIsLeftOfIt) {
    for (const char* name : {"QVScanlineMTIFilter", "QVScanlineMTIFilter2"}) {
        const auto filter = makeEffect(name);
        for (const auto& [strength, level, value] : {std::tuple{0.0f, 0, 0.5f},
                                                     {0.125f, 0, 0.75f},
                                                     {0.5f, 1, 0.5f},
                                                     {0.625f, 1, 0.75f},
                                                     {0.75f, 0, 0.0f},
                                                     {1.0f, 0, 0.5f}}) {
            filter->setEffectValue(strength);
            EXPECT_EQ(uniform<std::int32_t>(filter->parameters(), "level"), level) << strength;
            EXPECT_FLOAT_EQ(uniform<float>(filter->parameters(), "effectValue"), value) << strength;
        }
    }
    const auto parted = makeEffect("QVRGBMTIFilter");
    for (const auto& [strength, level, offset] :
         {std::tuple{0.0f, 0, 0.001}, {0.25f, 0, 0.03775}, {0.5f, 1, 0.0255}, {1.0f, 2, 0.05}}) {
        parted->setEffectValue(strength);
        EXPECT_EQ(uniform<std::int32_t>(parted->parameters(), "level"), level);
        EXPECT_NEAR(uniform<float>(parted->parameters(), "xOff"), offset, 1e-7);
    }
}

TEST(ParametricEffects, ShocksBeatFasterWithTheStrength) {
    const auto shock = makeEffect("QVAIShockFilter");
    // Three beats a second at no strength, ten at full: the same place in the beat seven of them later.
    for (const auto& [strength, beat] : {std::pair{0.0f, 1.0 / 3}, {1.0f, 0.1}}) {
        shock->setEffectValue(strength);
        const auto periodAt = [&](double beats) {
            shock->setITime(beats * beat);
            return uniform<float>(shock->parameters(), "period");
        };
        EXPECT_NEAR(periodAt(7.25), periodAt(0.25), 1e-5);
        EXPECT_GT(std::abs(periodAt(0.75) - periodAt(0.25)), 0.1);
    }
}

/// One step of an 8-bit channel, and what bilinear weights of eight bits add.
constexpr double kOneStep = 1.6 / 255;

using Settings = std::vector<std::pair<const char*, const char*>>;

Picture rendered(std::string_view name, const MTIImage& input, const Settings& settings) {
    const auto filter = createFilter(name);
    std::string error;
    for (const auto& [property, text] : settings)
        EXPECT_TRUE(setPropertyFromText(*filter, property, text, &error)) << name << ": " << error;
    static_cast<QVMTIOneInputFilter&>(*filter).setInputImage(input);
    return render(filter->outputImage());
}

/// Smooth, without symmetries, opaque.
MTIImage slopes(int width, int height) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int x, int y) {
        const float u = (float(x) + 0.5f) / float(width), v = (float(y) + 0.5f) / float(height);
        return Pixel{0.1f + 0.8f * u, 0.9f - 0.7f * v, 0.2f + 0.6f * u * v, 1};
    }));
}

/// A soft disc on nothing, with detail of single pixels.
MTIImage cutOut(int width, int height) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [&](int x, int y) {
        const float away = std::hypot(float(x) - 0.5f * float(width), float(y) - 0.5f * float(height));
        return Pixel{float((x * 5 + y * 3) % 16) / 15, (x + y) % 2 ? 1.0f : 0.2f, 0.6f,
                     std::clamp((0.4f * float(height) - away) / 6, 0.0f, 1.0f)};
    }));
}

TEST(ParametricEffects, NeutralValuesLeaveTheFrame) {
    const MTIImage input = cutOut(80, 60);
    const Picture source = render(input);
    for (const auto& [name, settings] :
         {std::pair<const char*, Settings>{"QVCenterMagnifyMTIFilter", {{"effectValue", "0"}}},
          {"QVCircleMagnifyMTIFilter", {{"effectValue", "0"}}},
          {"QVSwirlMTIFilter", {{"effectValue", "0"}}},
          {"QVSpliteKaleidoscopeMTIFilter", {{"effectValue", "0"}}},
          {"QVScanlineMTIFilter", {{"effectValue", "0.75"}}},
          {"QVGlassBlurMTIFilter", {{"effectValue", "0"}}},
          {"QVAIRGBFilter", {{"effectValue", "0"}, {"filterNumber", "5"}, {"iTime", "0.7"}}},
          {"QVAIReputationFilter", {{"distanceValue", "0"}}},
          {"QVSlowZoomInEffectMTIFilter", {{"effectValue", "0"}, {"endTime", "1"}, {"iTime", "0.4"}}},
          {"QVSlowZoomOutEffectMTIFilter", {{"effectValue", "0"}, {"endTime", "1"}, {"iTime", "0.4"}}},
          {"QVRollZoomInEffectMTIFilter", {{"effectValue", "0"}, {"endTime", "1"}, {"iTime", "0.4"}}},
          // A beat is over just before the next.
          {"QVAIShockFilter", {{"effectValue", "0"}, {"iTime", "0.3333"}}}}) {
        EXPECT_TRUE(matches(rendered(name, input, settings), source, kOneStep)) << name;
    }
}

TEST(ParametricEffects, BlocksAreAsManyAtEveryResolution) {
    const auto changes = [](int width, int height) {
        const Picture picture =
            rendered("QVMosaicMTIFilter", slopes(width, height), {{"effectValue", "0.5"}});
        int count = 0;
        for (int x = 1; x < width; ++x)
            count += difference(picture.at(x, height / 2), picture.at(x - 1, height / 2)) > 1e-3;
        return count;
    };
    const double expected = 1920.0 / 58;
    EXPECT_NEAR(changes(480, 270), expected, 2.5);  // 14.5 pixels are 15
    EXPECT_NEAR(changes(1920, 1080), expected, 2);
}

TEST(ParametricEffects, DotsAreRoundOnADarkerGround) {
    // Dots 13 pixels apart, laid out from the middle: one has its centre 6.5 pixels right of and below it.
    const Picture picture = rendered("QVCircleMosaicMTIFilter", slopes(960, 540), {{"effectValue", "0.5"}});
    const Pixel dot = picture.at(486, 276);
    EXPECT_LE(difference(dot, picture.at(482, 276)), 1e-5);
    EXPECT_LE(difference(dot, picture.at(486, 280)), 1e-5);
    for (auto [x, y] : {std::pair{481, 271}, std::pair{491, 281}, std::pair{491, 271}})
        EXPECT_LT(picture.at(x, y)[1], 0.6f * dot[1]) << "the corner of the cell";
}

TEST(ParametricEffects, MirrorsAndKaleidoscopesAreSymmetric) {
    const int side = 120;
    const MTIImage input = slopes(side, side);
    const Picture source = render(input);
    // Every picture is itself with its pixels at other places.
    const auto expectSame = [](const Picture& picture, const Picture& at, auto&& place) {
        EXPECT_TRUE(matchesPixels(picture, kOneStep, [&](int x, int y) {
            const auto [u, v] = place(x, y);
            return at.at(u, v);
        }));
    };
    const auto across = [](int x, int y) { return std::pair{side - 1 - x, y}; };
    const auto upsideDown = [](int x, int y) { return std::pair{x, side - 1 - y}; };
    const auto diagonal = [](int x, int y) { return std::pair{y, x}; };
    const Picture full = rendered("QVFullMirrorMTIFilter", input, {{"level", "0"}});
    expectSame(full, full, across);
    expectSame(full, full, upsideDown);
    // Eight sectors: the strength of 7/18.
    const Picture eight = rendered("QVSpliteKaleidoscopeMTIFilter", input, {{"splitNumber", "8"}});
    expectSame(eight, eight, across);
    expectSame(eight, eight, diagonal);
    // The left half, the upper left quarter, and strips of 24 pixels about the middle one.
    const auto low = [](int at) { return std::min(at, side - 1 - at); };
    expectSame(rendered("QVMirrorMTIFilter", input, {{"level", "0"}}), source, [&](int x, int y) {
        return std::pair{low(x), y};
    });
    expectSame(rendered("QVMirrorMTIFilter", input, {{"level", "1"}}), source, [&](int x, int y) {
        return std::pair{low(x), low(y)};
    });
    expectSame(rendered("QVMirrorMTIFilter", input, {{"level", "2"}}), source, [](int x, int y) {
        return std::pair{x / 24 % 2 ? 71 - x % 24 : x % 24 + 48, y};
    });
}

TEST(ParametricEffects, PanelsAndTilesShowTheFrame) {
    const int w = 96, h = 64;
    const Picture source = render(cutOut(w, h));
    // But for the line of two half pixels between them.
    const auto expectPanels = [&](const Picture& picture, double tolerance, bool across, bool down,
                                  auto&& at) {
        EXPECT_TRUE(matchesPixels(picture, tolerance, [&](int x, int y) {
            const bool isLine =
                (across && (x == w / 2 - 1 || x == w / 2)) || (down && (y == h / 2 - 1 || y == h / 2));
            return isLine ? picture.at(x, y) : at(x, y);
        }));
    };
    expectPanels(rendered("QVSplitDirectionFilte", cutOut(w, h), {{"direction", "horizontal"}}), 1e-6, true,
                 false, [&](int x, int y) { return source.at(x % (w / 2) + w / 4, y); });
    // Of those one above the other the middle lies 0.42 from the top: 26.88 rows, 16 of them above it.
    expectPanels(rendered("QVSplitDirectionFilte", cutOut(w, h), {{"direction", "vertical"}}), 1e-6, false,
                 true, [&](int x, int y) { return source.at(x, y % (h / 2) + 11); });
    // A tile is the whole frame made smaller.
    const Picture four = rendered("QVSplitFourFilter", rampsImage(w, h), {});
    expectPanels(four, 0.02, true, true, [&](int x, int y) {
        return Pixel{(float(x % (w / 2)) + 0.5f) * 2 / w, (float(y % (h / 2)) + 0.5f) * 2 / h, 0.5f, 1};
    });
    EXPECT_NEAR(four.at(w / 2, 5)[2], 0.75, 0.02) << "half white";
}

TEST(ParametricEffects, CopiesSurroundTheOneInTheMiddle) {
    const MTIImage input = slopes(240, 120);
    // 2 + 10 · 0.1 is three each way.
    const Picture three = rendered("QVAICopySplitFilter", input, {{"effectValue", "0.1"}});
    const Picture nine = rendered("QVSplitNineFilter", input, {});
    // Copies have half of their colour and 0.62 of their light.
    const auto faded = [](const Pixel& p) {
        return 0.62f * 0.5f * (p[0] + 0.2126f * p[0] + 0.7152f * p[1] + 0.0722f * p[2]);
    };
    for (const auto& [x, y] : {std::pair{15, 10}, {225, 15}, {100, 8}, {30, 100}, {200, 110}})
        EXPECT_NEAR(three.at(x, y)[0], faded(nine.at(x, y)), 0.02) << x << " " << y;
    // The large one has 0.54 of the frame's size.
    for (const int x : {70, 120, 160})
        EXPECT_NEAR(three.at(x, 60)[0], 0.1 + 0.8 * (0.5 + ((x + 0.5) / 240 - 0.5) / 0.54), 0.01) << x;
    // Between two and three the outer copies are cut.
    const Picture between = rendered("QVAICopySplitFilter", input, {{"effectValue", "0.05"}});
    EXPECT_NEAR(between.at(0, 60)[0], faded({0.3f, 0.55f, 0.275f, 1}), 0.01);
}

TEST(ParametricEffects, TheGlassMagnifiesInsideItsRimAlone) {
    const int w = 480, h = 360;
    const Picture source = render(slopes(w, h));
    // A power of two; the glass has a radius of 90 pixels.
    const Picture picture = rendered("QVCircleMagnifyMTIFilter", slopes(w, h), {{"effectValue", "1"}});
    for (int d : {-40, -20, 0, 30}) {
        const Pixel seen = picture.at(240 + d, 180), expected = source.at(240 + d / 2, 180);
        EXPECT_LE(difference(seen, expected), 0.012) << d;
    }
    EXPECT_LE(difference(picture.at(10, 10), source.at(10, 10)), kOneStep);
    const Pixel rim = picture.at(240 + 90, 180);
    EXPECT_NEAR(rim[1], rim[2], 0.02);
    EXPECT_GT(rim[1], rim[0] + 0.2) << "teal";
}

TEST(ParametricEffects, ColoursPartByTheOffset) {
    const int w = 200, h = 20;
    const Picture source = render(cutOut(w, h));
    // A twentieth of the width, at level 0: ten pixels.
    const Picture picture =
        rendered("QVRGBMTIFilter", cutOut(w, h), {{"effectValue", "0"}, {"xOff", "0.05"}});
    for (int x = 12; x < w - 12; x += 5) {
        EXPECT_NEAR(picture.at(x, 10)[0], source.at(x - 10, 10)[0], 1e-5);
        EXPECT_NEAR(picture.at(x, 10)[1], source.at(x, 10)[1], 1e-5);
        EXPECT_NEAR(picture.at(x, 10)[2], source.at(x + 10, 10)[2], 1e-5);
    }
}

TEST(ParametricEffects, ScanLinesAreFourRowsApartInASmallFrame) {
    const MTIImage grey = MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, false, {640, 360});
    const Picture lines = rendered("QVScanlineMTIFilter", grey, {{"effectValue", "0.25"}});
    const Picture stripes = rendered("QVScanlineMTIFilter2", grey, {{"effectValue", "0.5"}});
    EXPECT_LT(lines.at(100, 102)[0], 0.5f * lines.at(100, 100)[0]);
    EXPECT_LE(difference(lines.at(100, 100), lines.at(539, 104)), 0.02);
    // Three neighbours side by side: red, green and blue lead in turn.
    for (std::size_t c = 0; c < 3; ++c) {
        const Pixel stripe = stripes.at(300 + int(c), 100);
        EXPECT_EQ(std::max_element(stripe.begin(), stripe.begin() + 3) - stripe.begin(), std::ptrdiff_t(c));
    }
}

}  // namespace
}  // namespace qv::test
