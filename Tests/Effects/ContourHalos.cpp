// Light along the subject's outline, and the celebrations around it.

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourHaloFilter.h"

#include "QVFilterExtension/Saber/QVContourNoiseFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv {
namespace {

using test::makeEffect;

const char* const kHalos[] = {"QVAIFreezHaloFilter",    "QVAIGlitterHaloFilter", "QVAIHUEHaloFilter",
                              "QVAIContourNoiseFilter", "QVAICurrentFilter",     "QVAIFireFilter"};
const char* const kCelebrations[] = {"QVAIHUEChangeFilter", "QVAIFallingSquareFilter", "QVAIFreezeFilter",
                                     "QVAISnowBallFilter"};

/// White where `isSubject`, which is given pixel centres.
PixelBuffer maskOf(int width, int height, const std::function<bool(double x, double y)>& isSubject) {
    PixelBuffer mask = PixelBuffer::create(PixelFormat::gray8, width, height);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = mask.plane(0).data + std::size_t(y) * mask.plane(0).rowBytes;
        for (int x = 0; x < width; ++x) row[x] = isSubject(x + 0.5, y + 0.5) ? 255 : 0;
    }
    return mask;
}

PixelBuffer boxMask(int width, int height) {
    return maskOf(width, height, [=](double x, double y) {
        return x > width * 0.3 && x < width * 0.6 && y > height * 0.25 && y < height * 0.7;
    });
}

void setMask(QVAIEffectMTIFilter& filter, const PixelBuffer& mask) {
    filter.setMaskPixelBuffer(mask);
    filter.setMaskImage(MTIImage::imageWithPixelBuffer(mask));
}

const ImageNode* lineNode(const MTIImage& image) {
    for (const ImageNode* node : evaluationOrder(image))
        if (std::holds_alternative<LinePass>(node->operation)) return node;
    return nullptr;
}

TEST(ContourHalos, DrawTheirLinesInTheMasksMeasures) {
    struct Expected {
        const char* name;
        float thickness;
        MTIColor inner, outer;
    };
    // For a mask of 1024x576 and blue light, whose hue is two thirds of a turn from white's.
    const float orange = 0.6666666666666666f;
    const Expected all[] = {
        {"QVAIFreezHaloFilter", 122.88f, {0, 0, 1, 1}, {1, 1, 1, 0}},
        {"QVAIGlitterHaloFilter", 81.92f, {1, orange, 0.00392156862745098f, 0.5f}, {orange, 0, 1, 0}},
        {"QVAIHUEHaloFilter", 81.92f, {0, 0, 1, 1}, {1, 1, 1, 0}}};
    for (const auto& [name, thickness, inner, outer] : all) {
        const auto halo = makeEffect<QVAIContourHaloFilter>(name);
        halo->setInputImage(test::plainImage(320, 180, {0.2f, 0.2f, 0.2f, 1}));
        setMask(*halo, boxMask(1024, 576));
        halo->setColors({UIColor(0, 0, 1)});
        const MTIImage output = halo->outputImage();
        const ImageNode* node = lineNode(output);
        ASSERT_TRUE(node) << name;
        const auto& line = std::get<LinePass>(node->operation);
        EXPECT_EQ(line.thickness, thickness);
        EXPECT_EQ(line.pointSize, (CGSize{1024, 576}));
        EXPECT_EQ(node->width, 320);
        EXPECT_EQ(node->height, 180);
        EXPECT_EQ(line.kind().style.blend, DrawBlend::brightest);
        EXPECT_EQ(line.kind().vertices, 102);
        ASSERT_EQ(line.stops.size(), 2u);
        EXPECT_EQ(line.stops[0].color, inner) << name;
        const MTIColor& end = line.stops[1].color;
        EXPECT_LT(test::difference({end.red, end.green, end.blue, end.alpha},
                                   {outer.red, outer.green, outer.blue, outer.alpha}),
                  1e-6)
            << name;
        // A box of four long edges: two more points on each, 12 pixels from its ends.
        EXPECT_EQ(line.contours,
                  QVObjectContour::getApproxContourPointsWithMask(halo->maskPixelBuffer(), 0, 1.0f / 1024));
        ASSERT_EQ(line.contours.size(), 1u);
        int near = 0;
        for (const LineSegment& s : line.segments)
            near += std::abs(std::hypot(s.control[0] - s.end[0], s.control[1] - s.end[1]) - 6) < 0.01;
        EXPECT_GE(near, 4);
    }
}

TEST(ContourHalos, FallBackToTheFrameAndCelebrationsToNothing) {
    const MTIImage frame = test::rampsImage(64, 36);
    const PixelBuffer mask = boxMask(64, 36), nobody = maskOf(64, 36, [](double, double) { return false; });
    for (const char* name : kHalos) {
        const auto halo = makeEffect<QVAIEffectMTIFilter>(name);
        EXPECT_FALSE(halo->outputImage());
        halo->setInputImage(frame);
        EXPECT_EQ(halo->outputImage(), frame) << name << " without a mask";
        halo->setMaskImage(MTIImage::imageWithPixelBuffer(mask));
        EXPECT_EQ(halo->outputImage(), frame) << name << " without a mask in memory";
        setMask(*halo, nobody);
        EXPECT_EQ(halo->outputImage(), frame) << name << " without a subject";
        halo->setMaskPixelBuffer(mask);
        halo->setMaskImage({});
        EXPECT_EQ(halo->outputImage(), frame) << name << " without a mask's image";
    }
    const auto plain = makeEffect<QVAIContourHaloFilter>("QVAIContourHaloFilter");
    plain->setInputImage(frame);
    setMask(*plain, mask);
    EXPECT_EQ(plain->outputImage(), frame);
    for (const char* name : kCelebrations) {
        const auto effect = makeEffect<QVAIEffectMTIFilter>(name);
        effect->setInputImage(frame);
        effect->setMaskPixelBuffer(mask);
        EXPECT_FALSE(effect->outputImage()) << name;
        setMask(*effect, nobody);
        EXPECT_TRUE(effect->outputImage()) << name;
    }
}

TEST(ContourHalos, LieOnTheEdgeBehindTheSubjectOrOverIt) {
    const auto halo = makeEffect<QVAIContourHaloFilter>("QVAIHUEHaloFilter");
    halo->setInputImage(test::plainImage(320, 180, {0, 0, 0, 1}));
    setMask(*halo, boxMask(512, 288));
    const auto behind = test::render(halo->outputImage());
    // The subject's left edge is at x = 96; the line reaches 12.8 pixels to both sides.
    EXPECT_GT(behind.at(94, 90)[0], 0.75);
    EXPECT_GT(behind.at(90, 90)[0], behind.at(86, 90)[0] + 0.1);
    EXPECT_EQ(behind.at(81, 90)[0], 0);
    EXPECT_EQ(behind.at(99, 90)[0], 0);
    halo->setType(1);
    const auto over = test::render(halo->outputImage());
    EXPECT_NEAR(over.at(99, 90)[0], over.at(92, 90)[0], 0.08);
}

TEST(ContourHalos, TurnWithTheMask) {
    // A quarter turn anticlockwise: what was right is up.
    const auto subject = [](double x, double y) { return x > 150 && x < 250 && y > 40 && y < 90; };
    const auto upright = [&](double x, double y) { return subject(320 - y, x); };
    const auto lit = [](const PixelBuffer& buffer, const PixelBuffer& image,
                        const CGAffineTransform& transform) {
        const auto halo = makeEffect<QVAIContourHaloFilter>("QVAIHUEHaloFilter");
        halo->setInputImage(test::plainImage(90, 160, {0, 0, 0, 1}));
        halo->setMaskPixelBuffer(buffer);
        halo->setMaskImage(MTIImage::imageWithPixelBuffer(image));
        halo->setExtraTransform(transform);
        return test::render(halo->outputImage());
    };
    const PixelBuffer turned = maskOf(180, 320, upright);
    const auto expected = lit(turned, turned, {});
    const auto made = lit(maskOf(320, 180, subject), turned, CGAffineTransformMakeRotation(M_PI / 2));
    EXPECT_LT(test::meanDifference(made, expected), 0.004);
    EXPECT_GT(test::meanDifference(expected, test::render(test::plainImage(90, 160, {0, 0, 0, 1}))), 0.015);
}

TEST(ContourHalos, EndureAnyMask) {
    const PixelBuffer masks[] = {
        maskOf(1, 1, [](double, double) { return true; }),
        maskOf(2, 1, [](double x, double) { return x < 1; }),
        maskOf(600, 400, [](double x, double y) { return std::fmod(x, 20) < 12 && std::fmod(y, 20) < 12; }),
        boxMask(7680, 4320), maskOf(64, 64, [](double, double) { return true; })};
    for (const PixelBuffer& mask : masks) {
        for (const char* name : kHalos) {
            const auto halo = makeEffect<QVAIEffectMTIFilter>(name);
            halo->setInputImage(test::rampsImage(64, 36));
            halo->setITime(1.3);
            setMask(*halo, mask);
            const auto picture = test::render(halo->outputImage());
            for (float value : picture.values) ASSERT_TRUE(value >= 0 && value <= 1.001f) << name;
        }
    }
}

TEST(ContourNoise, ReachesTheKernelOfItsKind) {
    const MTIImage line = test::rampsImage(16, 16);
    QVContourNoiseFilter noise;
    noise.setInputImage(line);
    noise.setITime(1.5);
    QVSaberParam param{.aspectRatio = 1.95f,
                       .complexity = 4,
                       .direction = 90,
                       .distortion = 0.02f,
                       .noiseScale = 8.9f,
                       .noiseSpeed = 0.09f};
    const std::map<int, std::string> kernels{{0, ""}, {1, "1"}, {3, "3"}};
    for (int type = -1; type < 5; ++type) {
        param.distortType = type;
        noise.setParam(param);
        const MTIImage result = noise.outputImage();
        const auto kernel = kernels.find(type);
        if (kernel == kernels.end()) {
            EXPECT_EQ(result, line) << type;
            continue;
        }
        const auto pass = test::drawnPasses(result).back();
        EXPECT_EQ(pass.function, "QVInternalContourNoiseFilter" + kernel->second);
        EXPECT_EQ(test::uniform<float>(*pass.parameters, "uTime"), 1500.0f);
        EXPECT_EQ(test::uniform<float>(*pass.parameters, "uDirection"), 90.0f);
        EXPECT_EQ(test::uniform<float>(*pass.parameters, "uNSpeed"), 0.09f);
        EXPECT_EQ(test::uniform<float>(*pass.parameters, "uDistortion"), 0.02f);
        EXPECT_EQ(test::uniform<float>(*pass.parameters, "uAspectRatio"), 1.95f);
        EXPECT_EQ(test::uniform<float>(*pass.parameters, "uNScale"), 8.9f);
        EXPECT_EQ(test::uniform<std::int32_t>(*pass.parameters, "uComplexity"), 4);
        EXPECT_EQ(pass.parameters->size(), 7u);
    }
}

TEST(Celebrations, LeaveTheSubjectUntouchedAndChangeTheWorld) {
    for (const char* name : {"QVAIHUEChangeFilter", "QVAIFallingSquareFilter", "QVAIFreezeFilter"}) {
        const auto effect = makeEffect<QVAIEffectMTIFilter>(name);
        const auto frame = test::render(test::sceneImage(160, 90));
        effect->setInputImage(test::sceneImage(160, 90));
        effect->setEffectValue(1);
        effect->setITime(2.1);
        setMask(*effect, boxMask(160, 90));
        const auto picture = test::render(effect->outputImage());
        for (int x = 53; x < 91; ++x)
            ASSERT_LT(test::difference(picture.at(x, 45), frame.at(x, 45)), 0.005) << name;
        EXPECT_GT(test::meanDifference(picture, frame), 0.02) << name;
    }
}

}  // namespace
}  // namespace qv
