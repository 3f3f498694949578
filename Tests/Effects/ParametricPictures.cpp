// Pictures of the effects of one pass whose uniforms follow from strength and level, against what their
// geometry says.

#include <algorithm>
#include <cmath>

#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

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

TEST(ParametricPictures, NeutralValuesLeaveTheFrame) {
    const MTIImage input = cutOut(80, 60);
    const Picture source = render(input);
    struct Case {
        const char* name;
        Settings settings;
    };
    for (const Case& c :
         {Case{"QVCenterMagnifyMTIFilter", {{"effectValue", "0"}}},
          Case{"QVCircleMagnifyMTIFilter", {{"effectValue", "0"}}},
          Case{"QVSwirlMTIFilter", {{"effectValue", "0"}}},
          Case{"QVSpliteKaleidoscopeMTIFilter", {{"effectValue", "0"}}},
          Case{"QVScanlineMTIFilter", {{"effectValue", "0.75"}}},
          Case{"QVGlassBlurMTIFilter", {{"effectValue", "0"}}},
          Case{"QVAIRGBFilter", {{"effectValue", "0"}, {"filterNumber", "5"}, {"iTime", "0.7"}}},
          Case{"QVAIReputationFilter", {{"distanceValue", "0"}}},
          // A beat is over just before the next.
          Case{"QVAIShockFilter", {{"effectValue", "0"}, {"iTime", "0.3333"}}}}) {
        const Picture picture = rendered(c.name, input, c.settings);
        EXPECT_TRUE(matches(picture, source, kOneStep)) << c.name;
    }
}

TEST(ParametricPictures, BlocksAreAsManyAtEveryResolution) {
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

TEST(ParametricPictures, DotsAreRoundOnADarkerGround) {
    // Dots 13 pixels apart, laid out from the middle: one has its centre 6.5 pixels right of and below it.
    const Picture picture = rendered("QVCircleMosaicMTIFilter", slopes(960, 540), {{"effectValue", "0.5"}});
    const Pixel dot = picture.at(486, 276);
    EXPECT_LE(difference(dot, picture.at(482, 276)), 1e-5);
    EXPECT_LE(difference(dot, picture.at(486, 280)), 1e-5);
    for (auto [x, y] : {std::pair{481, 271}, std::pair{491, 281}, std::pair{491, 271}})
        EXPECT_LT(picture.at(x, y)[1], 0.6f * dot[1]) << "the corner of the cell";
}

TEST(ParametricPictures, MirrorsAndKaleidoscopesAreSymmetric) {
    const int side = 120;
    const MTIImage input = slopes(side, side);
    const Picture full = rendered("QVFullMirrorMTIFilter", input, {{"level", "0"}});
    const Picture strips = rendered("QVMirrorMTIFilter", input, {{"level", "2"}});
    const Picture source = render(input);
    // Eight sectors: the strength of 7/18.
    const Picture eight = rendered("QVSpliteKaleidoscopeMTIFilter", input, {{"splitNumber", "8"}});
    for (int y = 0; y < side; y += 3) {
        for (int x = 0; x < side; x += 3) {
            const int right = side - 1 - x, low = side - 1 - y;
            EXPECT_LE(difference(full.at(x, y), full.at(right, y)), kOneStep);
            EXPECT_LE(difference(full.at(x, y), full.at(x, low)), kOneStep);
            // A strip of 24 pixels is the reflection of the next one at their border.
            const int next = x / 24 * 48 + 47 - x;
            if (x < side - 24) {
                EXPECT_LE(difference(strips.at(x, y), strips.at(next, y)), kOneStep);
            }
            if (x >= 2 * side / 5 && x < 3 * side / 5) {
                EXPECT_LE(difference(strips.at(x, y), source.at(x, y)), kOneStep) << "the middle strip";
            }
            EXPECT_LE(difference(eight.at(x, y), eight.at(right, y)), kOneStep);
            EXPECT_LE(difference(eight.at(x, y), eight.at(low, x)), kOneStep) << "a quarter turn";
            EXPECT_LE(difference(eight.at(x, y), eight.at(y, x)), kOneStep) << "about the diagonal";
        }
    }
}

TEST(ParametricPictures, PanelsShowTheMiddleOfTheFrame) {
    const int w = 96, h = 64;
    const MTIImage input = cutOut(w, h);
    const Picture source = render(input);
    const Picture columns = rendered("QVSplitDirectionFilte", input, {{"direction", "horizontal"}});
    const Picture rows = rendered("QVSplitDirectionFilte", input, {{"direction", "vertical"}});
    for (int y = 0; y < h; y += 3) {
        for (int x = 0; x < w; x += 3) {
            EXPECT_LE(difference(columns.at(x, y), source.at(x % (w / 2) + w / 4, y)), 1e-6);
            EXPECT_LE(difference(rows.at(x, y), source.at(x, y % (h / 2) + h / 4)), 1e-6);
        }
    }
}

TEST(ParametricPictures, CopiesSurroundTheOneInTheMiddle) {
    const MTIImage input = slopes(240, 120);
    // 2 + 10 · 0.1 is three each way.
    const Picture three = rendered("QVAICopySplitFilter", input, {{"effectValue", "0.1"}});
    const Picture nine = rendered("QVSplitNineFilter", input, {});
    EXPECT_TRUE(matches(three, nine, 0.02));
    // Between two and three the middle copy is whole and the outer ones are cut.
    const Picture between = rendered("QVAICopySplitFilter", input, {{"effectValue", "0.05"}});
    EXPECT_NEAR(between.at(120, 60)[0], 0.5, 0.02);
    EXPECT_NEAR(between.at(0, 60)[0], 0.1 + 0.8 * 0.25, 0.02);
}

TEST(ParametricPictures, TheGlassMagnifiesInsideItsRimAlone) {
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

TEST(ParametricPictures, ColoursPartByTheOffset) {
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

TEST(ParametricPictures, ScanLinesDarkenEverySecondLineOfASmallFrame) {
    const MTIImage grey = MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, false, {640, 360});
    const Picture lines = rendered("QVScanlineMTIFilter", grey, {{"effectValue", "0.25"}});
    const Picture stripes = rendered("QVScanlineMTIFilter2", grey, {{"effectValue", "0.5"}});
    EXPECT_LT(lines.at(100, 101)[0], 0.8f * lines.at(100, 100)[0]);
    EXPECT_LE(difference(lines.at(100, 100), lines.at(307, 102)), 1e-5);
    // Three neighbours side by side: red, green and blue lead in turn.
    for (std::size_t c = 0; c < 3; ++c) {
        const Pixel stripe = stripes.at(300 + int(c), 100);
        EXPECT_EQ(std::max_element(stripe.begin(), stripe.begin() + 3) - stripe.begin(), std::ptrdiff_t(c));
    }
}

TEST(ParametricPictures, TimeMovesWhatItShould) {
    const MTIImage input = slopes(96, 96);
    const auto moves = [&](const char* name, const char* time, const Settings& settings) {
        Settings early = settings, late = settings;
        early.emplace_back(time, "0.1");
        late.emplace_back(time, "0.6");
        const Picture first = rendered(name, input, early);
        return worstDifference(first, rendered(name, input, late));
    };
    EXPECT_GT(moves("QVFlashWarpMTIFilter", "time", {}), 0.02);
    EXPECT_GT(moves("QVAIRGBFilter", "iTime", {}), 0.02);
    EXPECT_GT(moves("QVRGBMTIFilter", "iTime", {{"effectValue", "0.6"}}), 0.02);
    EXPECT_EQ(moves("QVRGBMTIFilter", "iTime", {{"effectValue", "0.3"}}), 0);
    EXPECT_GT(moves("QVAIShockFilter", "iTime", {{"effectValue", "0.1"}}), 0.01);
}

}  // namespace
}  // namespace qv::test
