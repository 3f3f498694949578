// The motion blurs: how strength sets them, of which filters they are made, and what they do to plain light.

#include "QVFilterExtension/MTIFilters/Effect/Blur/QVXMotionBlurEffectMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Effect = QVMotionBlurEffectMTIFilter;
constexpr const char* kAcross = "QVMotionBlurEffectMTIFilter";
constexpr const char* kUpright = "QVVMotionBlurEffectMTIFilter";
constexpr const char* kCrossed = "QVXMotionBlurEffectMTIFilter";

const ImageNode& inputOf(const ImageNode& node, std::size_t index) {
    return *node.inputs.at(index).node();
}

std::string setting(const ImageNode& node, std::string_view name) {
    for (const auto& [key, value] : node.stock.settings) {
        if (key == name) return value;
    }
    return "none";
}

TEST(MotionBlurEffects, StrengthSetsScaleAndOpacity) {
    struct Case {
        const char* name;
        float strength;
        double scale, opacity;
    };
    const Case cases[] = {
        {kAcross, 0, 1.3, 0.3},
        {kAcross, 0.1f, 1.2399999991059303, 0.4400000020861625},  // 0.1 in single precision
        {kAcross, 0.25f, 1.15, 0.65},
        {kAcross, 0.4999f, 1.0000599920749664, 0.999860018491745},
        {kAcross, 0.5f, 1, 1},
        {kAcross, 1, 1, 1},
        {kUpright, 0, 1.3, 0.3},
        {kUpright, 0.1f, 1.2599999994039537, 0.4400000020861625},
        {kUpright, 0.25f, 1.2, 0.65},
        {kUpright, 0.5f, 1.1, 1},
        {kUpright, 0.8f, 1.1, 1},
        {kCrossed, 0, 1.3, 0.55},
        {kCrossed, 0.1f, 1.3, 0.6100000008940697},
        {kCrossed, 0.5f, 1.3, 0.85},
        {kCrossed, 1, 1.3, 1.15},
    };
    for (const Case& each : cases) {
        const auto effect = makeEffect<Effect>(each.name);
        effect->setEffectValue(each.strength);
        EXPECT_EQ(effect->effectValue(), each.strength);
        EXPECT_NEAR(effect->scale(), each.scale, 1e-15) << each.name << " " << each.strength;
        EXPECT_NEAR(effect->opacity(), each.opacity, 1e-15) << each.name << " " << each.strength;
    }
    for (const char* name : {kAcross, kUpright, kCrossed}) {
        const QVFilterClass& record = *filterClassNamed(name);
        const auto filter = record.factory(record);  // before its strength is set, as creation does
        const auto* effect = dynamic_cast<Effect*>(filter.get());
        EXPECT_EQ(effect->scale(), 1.3);
        EXPECT_EQ(effect->opacity(), 1.0);
        EXPECT_EQ(effect->blurAngle(), name == kUpright ? 1.5707963267948966 : 0.0);
        EXPECT_EQ(effect->exposureFilter(), nullptr);
    }
}

TEST(MotionBlurEffects, TheSmearGrowsWithTheWidth) {
    for (const auto& [width, strength, length, crossed] : {std::tuple{750, 1.0f, 48.0, 48.0},
                                                           {1500, 0.5f, 48.0, 96.0},
                                                           {375, 0.25f, 6.0, 24.0},
                                                           {750, 0.0f, 0.0, 48.0}}) {
        for (const char* name : {kAcross, kUpright, kCrossed}) {
            const auto effect = makeEffect<Effect>(name);
            effect->setInputImage(MTIImage::initWithColor({1, 1, 1, 1}, false, {double(width), 40}));
            effect->setEffectValue(strength);
            EXPECT_DOUBLE_EQ(effect->blurSize(), name == kCrossed ? crossed : length) << name << " " << width;
            effect->outputImage();
            EXPECT_EQ(effect->blurFilter().blurSize(), effect->blurSize());
            EXPECT_EQ(effect->blurFilter().blurAngle(), name == kCrossed   ? 2.356194490192345
                                                        : name == kUpright ? 1.5707963267948966
                                                                           : 0.0);
        }
    }
}

TEST(MotionBlurEffects, ScreenAnEnlargedSmearOverThePicture) {
    const auto effect = makeEffect<Effect>(kAcross);
    effect->setInputImage(sceneImage(64, 36));
    effect->setEffectValue(0);
    const MTIImage output = effect->outputImage();
    const ImageNode& exposure = *output.node();
    EXPECT_EQ(exposure.stock.kind, "exposure");
    EXPECT_EQ(effect->exposureFilter()->exposure(), -0.18f);
    const ImageNode& blend = inputOf(exposure, 0);
    EXPECT_EQ(setting(blend, "mode"), "Screen");
    EXPECT_EQ(blend.inputs.at(0), effect->inputImage());
    const ImageNode& opacity = inputOf(blend, 1);
    EXPECT_EQ(setting(opacity, "opacity"), "0.3");
    const ImageNode& enlarged = inputOf(opacity, 0);
    EXPECT_EQ(setting(enlarged, "matrix"), "1.3 0 0 1.3 0 0");
    EXPECT_EQ(enlarged.inputs.at(0), effect->inputImage()) << "a smear without length";

    const auto before = effect->exposureFilter();
    effect->outputImage();
    EXPECT_NE(effect->exposureFilter(), before) << "made anew for each frame";

    // Nothing is enlarged or faded by one.
    effect->setEffectValue(0.5f);
    const MTIImage whole = effect->outputImage();
    const ImageNode& smear = inputOf(inputOf(*whole.node(), 0), 1);
    EXPECT_TRUE(std::holds_alternative<KernelPass>(smear.operation));
    EXPECT_EQ(smear.stock.kind, "");
}

TEST(MotionBlurEffects, WorkOnPlainLightAsWorkedByHand) {
    const double darker = std::pow(2.0, -0.18);
    for (const double light : {0.2, 0.5, 0.8}) {
        const auto color = float(light);
        for (const auto& [name, opacity] : {std::pair{kAcross, 1.0}, {kUpright, 1.0}, {kCrossed, 0.85}}) {
            const auto effect = makeEffect<Effect>(name);
            effect->setInputImage(plainImage(60, 40, {color, color, color, 1}));
            effect->setEffectValue(0.5f);
            const Picture picture = render(effect->outputImage());
            const double expected = darker * (1 - (1 - light) * (1 - opacity * light));
            EXPECT_NEAR(picture.at(30, 20)[0], expected, 2.0 / 255) << name;
            EXPECT_NEAR(picture.at(0, 39)[0], expected, 2.0 / 255) << name << " in the corner";
            EXPECT_EQ(picture.at(30, 20)[3], 1);
        }
    }
}

TEST(MotionBlurEffects, SmearAlongTheirDirections) {
    // A small light in the middle; the smear is 24 pixels long at half strength, 48 crossed.
    const MTIImage light = MTIImage::imageWithBitmap(makeBitmap(751, 751, [](int x, int y) {
        const float level = std::abs(x - 375) < 4 && std::abs(y - 375) < 4 ? 1.0f : 0.0f;
        return Pixel{level, level, level, 1};
    }));
    struct Case {
        const char* name;
        bool across, upright, diagonal;
    };
    for (const Case& each : {Case{kAcross, true, false, false},
                             {kUpright, false, true, false},
                             {kCrossed, false, false, true}}) {
        const auto effect = makeEffect<Effect>(each.name);
        effect->setInputImage(light);
        effect->setEffectValue(0.5f);
        const Picture picture = render(effect->outputImage());
        const auto lit = [&](int right, int down) {
            return picture.at(375 + right, 375 + down)[0] > 0.05f &&
                   picture.at(375 - right, 375 - down)[0] > 0.05f;
        };
        EXPECT_EQ(lit(10, 0), each.across) << each.name;
        EXPECT_EQ(lit(0, 10), each.upright) << each.name;
        EXPECT_EQ(lit(10, 10), each.diagonal) << each.name;
        EXPECT_EQ(lit(10, -10), each.diagonal) << each.name;
        EXPECT_FALSE(lit(24, 0) || lit(0, 24) || lit(24, 24)) << each.name;
    }
}

}  // namespace
}  // namespace qv::test
