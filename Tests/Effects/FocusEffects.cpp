// Selective blur and tilt-shift: where they are sharp, and how much they blur.

#include "Platform/ImageGraph/MTIFilters.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr const char* kCircle = "QVSelectiveBlurMTIFilter";
constexpr const char* kBand = "QVTiltMTIFilter";

Picture blurred(const MTIImage& image, double radius) {
    MTIGaussianBlurFilter blur;
    blur.setInputImage(image);
    blur.setRadius(float(radius));
    return render(blur.outputImage());
}

TEST(FocusEffects, BlurByTheFirstSettingAndTheShorterSide) {
    struct Case {
        std::vector<double> settings;
        CGSize size;
        float radius;
    };
    const Case cases[] = {{{}, {1080, 1920}, 11.25f},
                          {{0.5, 7}, {1920, 1080}, 11.25f},
                          {{1}, {720, 720}, 15},
                          {{0.25}, {3840, 2160}, 11.25f}};
    for (const char* name : {kCircle, kBand}) {
        const auto effect = makeEffect(name);
        EXPECT_FALSE(effect->outputImage());
        for (const Case& each : cases) {
            effect->setInputImage(MTIImage::initWithColor({1, 0, 0, 1}, false, each.size));
            effect->setExtractValues(each.settings);
            const MTIImage output = effect->outputImage();
            ASSERT_EQ(output.node()->inputs.size(), 2u);
            EXPECT_EQ(output.node()->inputs[0], effect->inputImage());
            const auto* blur = std::get_if<GaussianBlurPass>(&output.node()->inputs[1].node()->operation);
            ASSERT_TRUE(blur);
            EXPECT_EQ(blur->radius, each.radius) << name;
        }
        for (const double none : {0.0, -1.0, double(NAN), double(INFINITY)}) {
            effect->setInputImage(sceneImage(32, 18));
            effect->setExtractValues({none});
            EXPECT_TRUE(matches(render(effect->outputImage()), render(effect->inputImage()), 1e-3)) << none;
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
                const Picture picture = render(effect->outputImage());
                double inside = 0, outside = 0, between = 0;
                for (int y = 0; y < height; ++y) {
                    for (int x = 0; x < width; ++x) {
                        const double fromMiddle = std::hypot(x + 0.5 - width / 2.0, y + 0.5 - height / 2.0);
                        const double beyond = name == kCircle
                                                  ? fromMiddle / (diagonal * 0.625) - (1 - strength - 0.1875)
                                                  : std::max(0.8 * strength - (y + 0.5) / height,
                                                             (y + 0.5) / height - 0.8 * strength - 0.2);
                        const double width01 = name == kCircle ? 0.1875 : 0.2;
                        const Pixel p = picture.at(x, y), a = sharp.at(x, y), b = soft.at(x, y);
                        if (beyond <= 0) {
                            inside = std::max(inside, difference(p, a));
                        } else if (beyond >= width01) {
                            outside = std::max(outside, difference(p, b));
                        } else {
                            const bool mixed = p[1] >= std::min(a[1], b[1]) - 0.005f &&
                                               p[1] <= std::max(a[1], b[1]) + 0.005f;
                            between = std::max(between, mixed ? 0.0 : 1.0);
                        }
                    }
                }
                SCOPED_TRACE(testing::Message() << name << " " << width << "x" << height << " " << strength);
                EXPECT_LT(inside, 0.5 / 255);
                EXPECT_LT(outside, 2.0 / 255);  // passes of 8 bits between
                EXPECT_EQ(between, 0) << "a mix of the two";
                EXPECT_EQ(name == kCircle && strength == 0, meanDifference(picture, sharp) < 1e-4);
            }
        }
    }
}

}  // namespace
}  // namespace qv::test
