// The blurs: how strength sets those of motion and what they do to plain light; where selective blur and
// tilt-shift are sharp, and how much they blur.

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Effect/Blur/QVXMotionBlurEffectMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Effect = QVMotionBlurEffectMTIFilter;
constexpr const char* kAcross = "QVMotionBlurEffectMTIFilter";
constexpr const char* kUpright = "QVVMotionBlurEffectMTIFilter";
constexpr const char* kCrossed = "QVXMotionBlurEffectMTIFilter";

TEST(MotionBlurEffects, StrengthSetsScaleAndOpacity) {
    const struct {
        const char* name;
        float strength;
        double scale, opacity;
    } cases[] = {
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
    for (const auto& each : cases) {
        const auto effect = makeEffect<Effect>(each.name);
        effect->setEffectValue(each.strength);
        EXPECT_NEAR(effect->scale(), each.scale, 1e-15) << each.name << " " << each.strength;
        EXPECT_NEAR(effect->opacity(), each.opacity, 1e-15) << each.name << " " << each.strength;
    }
    for (const char* name : {kAcross, kUpright, kCrossed}) {
        const QVFilterClass& record = *filterClassNamed(name);
        const auto filter = record.factory(record);  // before its strength is set, as creation does
        const auto* effect = dynamic_cast<Effect*>(filter.get());
        EXPECT_EQ(effect->scale(), 1.3);
        EXPECT_EQ(effect->opacity(), 1.0);
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
        }
    }
}

/// What is smeared of a channel of a pixel: the lights, by 1.2 luma².
double smeared(double channel, double luma) {
    return channel * std::min(1.2 * luma * luma, 1.0);
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
            const double expected = darker * (1 - (1 - light) * (1 - opacity * smeared(light, light)));
            EXPECT_NEAR(picture.at(30, 20)[0], expected, 2.0 / 255) << name;
            EXPECT_NEAR(picture.at(0, 39)[0], expected, 2.0 / 255) << name << " in the corner";
        }
    }
    // Without strength the smear is the lights of the picture 1.3 times as large, at an opacity of 0.3.
    const auto still = makeEffect<Effect>(kAcross);
    still->setInputImage(rampsImage(80, 60));
    still->setEffectValue(0);
    const Picture picture = render(still->outputImage());
    for (int x = 2; x < 78; ++x) {
        const double here = (x + 0.5) / 80, enlarged = 0.5 + (here - 0.5) / 1.3;
        const double green = 0.5 + (20.5 / 60 - 0.5) / 1.3,
                     luma = 0.2126 * enlarged + 0.7152 * green + 0.0722 / 2;
        const double light = smeared(enlarged, luma);
        EXPECT_NEAR(picture.at(x, 20)[0], darker * (1 - (1 - here) * (1 - 0.3 * light)), 2.0 / 255) << x;
    }
}

TEST(MotionBlurEffects, SmearAlongTheirDirections) {
    // A small light in the middle; the smear is 24 pixels long at half strength, 48 crossed.
    const MTIImage light = MTIImage::imageWithBitmap(makeBitmap(751, 751, [](int x, int y) {
        const float level = std::abs(x - 375) < 4 && std::abs(y - 375) < 4 ? 1.0f : 0.0f;
        return Pixel{level, level, level, 1};
    }));
    const struct {
        const char* name;
        bool across, upright, diagonal;
    } cases[] = {
        {kAcross, true, false, false}, {kUpright, false, true, false}, {kCrossed, false, false, true}};
    for (const auto& each : cases) {
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

constexpr const char* kCircle = "QVSelectiveBlurMTIFilter";
constexpr const char* kBand = "QVTiltMTIFilter";

Picture blurred(const MTIImage& image, double radius) {
    MTIGaussianBlurFilter blur;
    blur.setInputImage(image);
    blur.setRadius(float(radius));
    return render(blur.outputImage());
}

TEST(FocusEffects, BlurByTheFirstSettingAndTheShorterSide) {
    const struct {
        std::vector<double> settings;
        CGSize size;
        float radius;
    } cases[] = {{{}, {1080, 1920}, 11.25f},
                 {{0.5, 7}, {1920, 1080}, 11.25f},
                 {{1}, {720, 720}, 15},
                 {{0.25}, {3840, 2160}, 11.25f}};
    for (const char* name : {kCircle, kBand}) {
        const auto effect = makeEffect(name);
        for (const auto& each : cases) {
            effect->setInputImage(MTIImage::initWithColor({1, 0, 0, 1}, false, each.size));
            effect->setExtractValues(each.settings);
            const MTIImage output = effect->outputImage();
            const auto* blur = std::get_if<GaussianBlurPass>(&output.node()->inputs.at(1).node()->operation);
            ASSERT_TRUE(blur);
            EXPECT_EQ(blur->radius, each.radius) << name;
        }
    }
}

TEST(FocusEffects, AreSharpInsideAndBlurredOutside) {
    for (const auto& [width, height] : {std::pair{192, 108}, {108, 192}, {144, 144}}) {
        const MTIImage scene = sceneImage(width, height);
        const Picture sharp = render(scene), soft = blurred(scene, std::min(width, height) / 48.0);
        const double diagonal = std::hypot(width, height);
        for (const char* name : {kCircle, kBand}) {
            const auto effect = makeEffect(name);
            effect->setInputImage(scene);
            effect->setExtractValues({1});
            for (const double strength : {0.0, 0.3, 0.5, 1.0}) {
                effect->setEffectValue(float(strength));
                SCOPED_TRACE(testing::Message() << name << " " << width << "x" << height << " " << strength);
                const Picture picture = render(effect->outputImage());
                const double width01 = name == kCircle ? 0.1875 : 0.2;
                EXPECT_TRUE(matchesPixels(picture, 2.0 / 255, [&](int x, int y) {  // passes of 8 bits between
                    const double fromMiddle = std::hypot(x + 0.5 - width / 2.0, y + 0.5 - height / 2.0);
                    const double beyond = name == kCircle
                                              ? fromMiddle / (diagonal * 0.625) - (1 - strength - 0.1875)
                                              : std::max(0.8 * strength - (y + 0.5) / height,
                                                         (y + 0.5) / height - 0.8 * strength - 0.2);
                    const Pixel a = sharp.at(x, y), b = soft.at(x, y);
                    if (beyond <= 0) return a;
                    if (beyond >= width01) return b;
                    // Between, any mix of the two.
                    Pixel mixed = picture.at(x, y);
                    for (std::size_t c = 0; c < 4; ++c)
                        mixed[c] = std::clamp(mixed[c], std::min(a[c], b[c]), std::max(a[c], b[c]));
                    return mixed;
                }));
                EXPECT_EQ(name == kCircle && strength == 0, meanDifference(picture, sharp) < 1e-4);
            }
        }
    }
}

}  // namespace
}  // namespace qv::test
