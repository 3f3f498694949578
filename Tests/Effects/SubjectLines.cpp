// Lines and sprites along the outline of subjects whose shape is known.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "Platform/ImageGraph/ImageNode.h"
#include "QVFilterCore/QVAIEffectMTIFilter.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIEdgeSpiritFilter.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIHSVColorLineFilter.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAINeonFilter.h"
#include "Tests/Support/TestContext.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr float kGrey = 0.4f;
const char* const kLines[] = {"QVAIImaginaryFilter",    "QVAIDoubleLineMTIFilter", "QVAIEdgeGlowFilter",
                              "QVAIHSVColorLineFilter", "QVAIGoldImaginaryFilter", "QVAINeonFilter"};
const char* const kSprites[] = {"QVAIEdgeFlashFilter", "QVAIStarflashFilter", "QVAIWaferflashFilter"};

template <typename Value>
PixelBuffer maskOf(int width, int height, Value value) {
    PixelBuffer mask = PixelBuffer::create(PixelFormat::gray8, width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            mask.plane(0).data[std::size_t(y) * mask.plane(0).rowBytes + std::size_t(x)] =
                std::uint8_t(255 * std::clamp(value(x + 0.5, y + 0.5), 0.0, 1.0));
    return mask;
}

PixelBuffer discMask(int width, int height, double x, double y, double radius) {
    return maskOf(width, height,
                  [=](double px, double py) { return radius - std::hypot(px - x, py - y) + 0.5; });
}

void setMask(QVAIEffectMTIFilter& effect, const PixelBuffer& mask) {
    effect.setMaskPixelBuffer(mask);
    effect.setMaskImage(MTIImage::imageWithPixelBuffer(mask, MTIAlphaType::alphaIsOne));
}

std::unique_ptr<QVAIEffectMTIFilter> effectOver(std::string_view name, const PixelBuffer& mask, int width,
                                                int height) {
    auto effect = makeEffect<QVAIEffectMTIFilter>(name);
    effect->setInputImage(plainImage(width, height, {kGrey, kGrey, kGrey, 1}));
    setMask(*effect, mask);
    return effect;
}

/// How much of a row is covered by a line that is lighter than the frame: places where it begins and ends.
std::vector<double> bordersInRow(const Picture& picture, int y, int from) {
    std::vector<double> borders;
    for (int x = from; x + 1 < picture.width; ++x) {
        const float half = (1 + kGrey) / 2, a = picture.at(x, y)[1], b = picture.at(x + 1, y)[1];
        if ((a < half) != (b < half)) borders.push_back(x + 0.5 + (half - a) / (b - a));
    }
    return borders;
}

TEST(SubjectLines, LieAroundTheSubjectAtTheirWidths) {
    // The mask covers the middle half of the frame's height when it is not stretched.
    const PixelBuffer mask = discMask(512, 256, 256, 128, 60);
    const auto bordersOf = [&](std::string_view name) {
        return bordersInRow(render(effectOver(name, mask, 1024, 1024)->outputImage()), 512, 512);
    };
    // Two pixels of the frame to one of the mask; a radius of 4 keeps 0.64 of it away, a line is 4/512 of the
    // frame wide.
    const auto one = bordersOf("QVAIImaginaryFilter");
    ASSERT_EQ(one.size(), 2u);
    EXPECT_NEAR(one[0], 512 + 2 * (60 + 0.64 * 4) - 4, 1.5);
    EXPECT_NEAR(one[1], 512 + 2 * (60 + 0.64 * 4) + 4, 1.5);
    const auto two = bordersOf("QVAIDoubleLineMTIFilter");
    ASSERT_EQ(two.size(), 4u);
    EXPECT_NEAR(two[0], 512 + 2 * (60 + 0.64 * 8) - 6, 1.5);
    EXPECT_NEAR(two[1] - two[0], 12, 1);
    EXPECT_NEAR((two[2] + two[3]) / 2, 512 + 2 * (60 + 0.64 * 17), 2.5);
    EXPECT_NEAR(two[3] - two[2], 4, 1);

    // Above the middle the line, which is fitted, lies behind the subject, which is stretched.
    const Picture picture = render(effectOver("QVAIImaginaryFilter", mask, 1024, 1024)->outputImage());
    EXPECT_NEAR(picture.at(512, 512 - 125)[1], kGrey, 0.01);
}

TEST(SubjectLines, HaveTheFirstColorOrTheirOwn) {
    const PixelBuffer mask = discMask(256, 256, 128, 128, 60);
    const struct {
        const char* name;
        UIColor own;
    } kOwn[] = {{"QVAIImaginaryFilter", {1, 1, 1}},
                {"QVAIDoubleLineMTIFilter", {1, 1, 1}},
                {"QVAIHSVColorLineFilter", {1, 1, 1}},
                {"QVAIEdgeGlowFilter", {0, 1, 1}},
                {"QVAIGoldImaginaryFilter", {1, 194.0 / 255, 0}},
                {"QVAINeonFilter", {1, 0, 252.0 / 255}}};
    for (const auto& [name, own] : kOwn) {
        const auto effect = effectOver(name, mask, 256, 256);
        EXPECT_EQ(effect->lineColor(), own) << name;
        EXPECT_EQ(effect->defaultColors().size(), 1u);
        effect->setColors({{0, 1, 0}, {1, 0, 0}});
        EXPECT_EQ(effect->lineColor(), UIColor(0, 1, 0));
    }
    const auto effect = effectOver("QVAIImaginaryFilter", mask, 256, 256);
    effect->setColors({{0, 1, 0}, {1, 0, 0}});
    const Pixel line = render(effect->outputImage()).at(int(128 + 60 + 0.64 * 2), 128);
    EXPECT_NEAR(line[0], 0, 0.02);
    EXPECT_NEAR(line[1], 1, 0.05);
}

TEST(SubjectLines, NeonIsCountedInTheMasksPixels) {
    // 512: a glow 10 wide, blurred by 3, and a core of 6 pixels of the frame.
    const auto effect = effectOver("QVAINeonFilter", discMask(512, 288, 256, 144, 60), 1024, 576);
    const MTIImage output = effect->outputImage();
    std::vector<float> radii;
    for (const ImageNode* node : evaluationOrder(output))
        if (const auto* blur = std::get_if<GaussianBlurPass>(&node->operation)) radii.push_back(blur->radius);
    EXPECT_THAT(radii, testing::ElementsAre(3.0f));
    const auto core = bordersInRow(render(output), 288, 512);
    ASSERT_EQ(core.size(), 2u);
    EXPECT_NEAR(core[1] - core[0], 6, 0.6);
    EXPECT_NEAR((core[0] + core[1]) / 2, 512 + 2 * (60 + 0.64 * 8), 1.5);
}

TEST(SubjectLines, OnlyTheBoxAroundALineIsDrawn) {
    const auto effect = effectOver("QVAIImaginaryFilter", discMask(512, 288, 120, 100, 40), 1920, 1080);
    const MTIImage output = effect->outputImage();
    std::vector<const BitmapSource*> drawn;
    for (const ImageNode* node : evaluationOrder(output)) {
        const auto* source = std::get_if<BitmapSource>(&node->operation);
        if (source && node != effect->inputImage().node().get()) drawn.push_back(source);
    }
    ASSERT_EQ(drawn.size(), 1u);
    EXPECT_NEAR(drawn[0]->bitmap.width, 3.75 * 2 * (40 + 0.64 * 4) + 15, 8);
    EXPECT_EQ(drawn[0]->bitmap.width, drawn[0]->bitmap.height);
}

TEST(SubjectLines, FollowTheExtraTransform) {
    // A mask that lies on its side: a quarter turn clockwise makes (x, y) to (height - y, x).
    const PixelBuffer lying = discMask(200, 400, 60, 90, 30);
    const auto effect = makeEffect<QVAINeonFilter>("QVAINeonFilter");
    effect->setExtraTransform({0, -1, 1, 0, 0, 0});
    effect->setMaskPixelBuffer(lying);
    const CGRect bounds = effect->contourPath().controlPointBounds();
    EXPECT_NEAR(bounds.midX(), 400 - 90, 1.5);
    EXPECT_NEAR(bounds.midY(), 60, 1.5);
    EXPECT_EQ(effect->transformedMaskSize(), (CGSize{400, 200}));
    // What is drawn agrees with the mask's picture, which is transformed the same way.
    effect->setMaskImage(MTIImage::imageWithPixelBuffer(lying, MTIAlphaType::alphaIsOne)
                             .imageByApplyingTransform(effect->extraTransform(), true));
    effect->setInputImage(plainImage(400, 200, {kGrey, kGrey, kGrey, 1}));
    const auto core = bordersInRow(render(effect->outputImage()), 60, 310);
    ASSERT_EQ(core.size(), 2u);
    EXPECT_NEAR((core[0] + core[1]) / 2, 310 + 30 + 0.64 * 6, 1.5);
}

TEST(SubjectLines, BoxOfTheSubject) {
    QVAIHSVColorLineFilter effect;
    EXPECT_EQ(effect.getLineWidth(), 0);
    const PixelBuffer mask = maskOf(100, 50, [](double x, double y) {
        if (x > 20 && x < 61 && y > 10 && y < 13) return 11.0 / 255;
        return x > 90 ? 10.0 / 255 : 0;
    });
    const CGRect box = QVAIHSVColorLineFilter::getMinRectFromMask(mask);
    EXPECT_EQ(box, CGRectMake(20, 10, 41, 3));
    EXPECT_EQ(QVAIHSVColorLineFilter::getMinRectFromMask(maskOf(9, 9, [](double, double) { return 0.0; })),
              CGRectZero);
    setMask(effect, mask);
    effect.setInputImage(plainImage(400, 200, {0, 0, 0, 1}));
    EXPECT_EQ(effect.getLineWidth(), float(41 * 0.2 / 400));
}

TEST(SubjectLines, WithoutASubjectTheFrameStays) {
    const auto black = [](double, double) { return 0.0; };
    const auto white = [](double, double) { return 1.0; };
    for (const char* name : kLines) {
        SCOPED_TRACE(name);
        const auto effect = effectOver(name, maskOf(64, 36, black), 64, 36);
        EXPECT_EQ(effect->outputImage(), effect->inputImage());
        effect->setMaskPixelBuffer({});
        EXPECT_EQ(effect->outputImage(), effect->inputImage()) << "no outline without a mask in memory";
        setMask(*effect, maskOf(64, 36, white));
        for (const float value : render(effect->outputImage()).values)
            EXPECT_TRUE(value == 1 || std::abs(value - kGrey) < 0.006)
                << "all of the frame is in front of the line";
        effect->setMaskImage({});
        const bool isNeon = std::string_view(name) == "QVAINeonFilter";
        EXPECT_EQ(effect->outputImage(), isNeon ? effect->inputImage() : MTIImage());
        for (const auto& [width, height] : {std::pair{1, 1}, {2, 1}, {1, 300}, {8192, 2}}) {
            setMask(*effect, maskOf(width, height, white));
            EXPECT_TRUE(effect->outputImage());
            EXPECT_EQ(render(effect->outputImage()).width, 64);
        }
    }
    for (const char* name : kSprites) {
        SCOPED_TRACE(name);
        const auto effect = effectOver(name, maskOf(64, 36, black), 64, 36);
        EXPECT_EQ(effect->outputImage(), effect->inputImage());
        setMask(*effect, maskOf(64, 36, white));
        EXPECT_EQ(effect->outputImage(), effect->inputImage()) << "the border has no sprites";
    }
}

TEST(SubjectSprites, LieAlongTheOutline) {
    QVAIEdgeSpiritFilter effect;
    effect.setInputImage(plainImage(400, 200, {0, 0, 0, 1}));
    setMask(effect, discMask(400, 200, 200, 100, 60));
    const auto texture = SpiritParam::spiritTextureWithImage(UIImage(makeBitmap(4, 4, [](int, int) {
        return Pixel{1, 1, 1, 1};
    })));
    const auto placeOf = [&](QVEdgeSpirit sprite) {
        sprite.texture = texture;
        sprite.size = {0.1, 0.05};
        effect.setEdgeSpiritParam({sprite});
        EXPECT_TRUE(effect.outputImage());
        const CGAffineTransform& trans = effect.spiritParams().at(0).trans;
        EXPECT_NEAR(trans.a, 0.1 * 200 / 400, 1e-9);
        EXPECT_NEAR(trans.d, 0.05 * 200 / 400, 1e-9);
        return CGPoint{trans.tx, trans.ty};  // half widths of the frame, y up
    };
    // From the top clockwise; the outline runs a little outside.
    const double radius = (60 + 0.64 * 2) / 200;
    const auto expectAt = [&](QVEdgeSpirit sprite, double x, double y) {
        const CGPoint place = placeOf(sprite);
        EXPECT_NEAR(place.x, x, 0.012);
        EXPECT_NEAR(place.y, y, 0.012);
    };
    expectAt({.place = 0}, 0, radius);
    expectAt({.place = 0.25}, radius, 0);
    expectAt({.place = 0.5}, 0, -radius);
    expectAt({.place = 0.25, .distance = 0.2, .rise = 0.1}, radius + 0.2 * 200 / 200, 0.1 * 200 / 200);

    // Cut off at the left: no sprite on the frame's border.
    setMask(effect, maskOf(400, 200, [](double x, double) { return x < 100 ? 1.0 : 0.0; }));
    for (double place : {0.0, 0.3, 0.99}) EXPECT_NEAR(placeOf({.place = place}).x, -0.5, 0.02);
}

TEST(SubjectSprites, StayInPlaceOnAMovingSubject) {
    QVAIEdgeSpiritFilter effect;
    effect.setInputImage(plainImage(400, 400, {0, 0, 0, 1}));
    std::optional<CGPoint> last;
    for (int step = 0; step < 20; ++step) {
        const double shift = step * 0.15;
        setMask(effect, maskOf(400, 400, [&](double x, double y) {
                    const double angle = std::atan2(y - 200, x - 200 - shift);
                    return 100 + 12 * std::sin(5 * angle) - std::hypot(x - 200 - shift, y - 200) + 0.5;
                }));
        effect.setEdgeSpiritParam({{.place = 0.37, .size = {0.1, 0.1}}});
        effect.outputImage();
        const CGAffineTransform& trans = effect.spiritParams().at(0).trans;
        const CGPoint place{trans.tx * 200 - shift, trans.ty * 200};
        if (last) {
            EXPECT_LT(std::hypot(place.x - last->x, place.y - last->y), 1.0) << step;
        }
        last = place;
    }
}

}  // namespace
}  // namespace qv::test
