#include "Platform/ImageGraph/MTIImage.h"

#include <cmath>
#include <cstring>
#include <numbers>

#include "Platform/ImageGraph/ImageNode.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using test::Pixel;

/// One bright square of 3 x 3 pixels, centred on a pixel, on opaque black.
MTIImage dot(int width, int height, int cx, int cy) {
    return MTIImage::imageWithBitmap(test::makeBitmap(width, height, [&](int x, int y) {
        const float v = std::abs(x - cx) <= 1 && std::abs(y - cy) <= 1 ? 1.0f : 0.0f;
        return Pixel{v, v, v, 1};
    }));
}

struct Place {
    double x, y, mass;
};

/// Centre of what is bright, in pixels.
Place brightPlace(const test::Picture& picture) {
    Place p{0, 0, 0};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const double v = picture.at(x, y)[0];
            p.x += v * x;
            p.y += v * y;
            p.mass += v;
        }
    }
    return {p.x / p.mass, p.y / p.mass, p.mass};
}

TEST(MTIImage, TransformsAboutItsCentreWithYUp) {
    // The dot lies 20 right of the centre (50, 30) and 10 above it, counted between pixel centres.
    const MTIImage image = dot(101, 61, 70, 20);
    struct Case {
        CGAffineTransform transform;
        double x, y;
    };
    const double turn = std::numbers::pi / 2;
    const Case cases[] = {
        {CGAffineTransformMakeTranslation(7, 4), 77, 16},
        {CGAffineTransformMakeScale(0.5, 0.5), 60, 25},
        {CGAffineTransformMakeScale(-1, 1), 30, 20},
        {CGAffineTransformMakeRotation(turn), 40, 10},  // anticlockwise: right goes up
        {CGAffineTransformConcat(CGAffineTransformMakeRotation(turn), CGAffineTransformMakeTranslation(5, 0)),
         45, 10},
        {CGAffineTransformConcat(CGAffineTransformMakeTranslation(5, 0), CGAffineTransformMakeRotation(turn)),
         40, 5},
        {CGAffineTransform{1, 0, 0.5, 1, 0, 0}, 75, 20},  // x moves with y
    };
    for (const Case& c : cases) {
        const MTIImage moved = image.imageByApplyingTransform(c.transform);
        EXPECT_EQ(moved.size(), image.size());
        const Place place = brightPlace(test::render(moved));
        EXPECT_NEAR(place.x, c.x, 0.02);
        EXPECT_NEAR(place.y, c.y, 0.02);
        if (c.transform.a != 0.5) {
            EXPECT_NEAR(place.mass, 9, 0.2);
        }
    }
}

TEST(MTIImage, TransformIsTransparentOutside) {
    const MTIImage white = MTIImage::initWithColor({1, 1, 1, 1}, false, {40, 20});
    const test::Picture half =
        test::render(white.imageByApplyingTransform(CGAffineTransformMakeScale(0.5, 0.5)));
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 40; ++x) {
            const bool inside = x >= 10 && x < 30 && y >= 5 && y < 15;
            EXPECT_NEAR(half.at(x, y)[3], inside ? 1 : 0, 1e-3) << x << " " << y;
        }
    }
    // An edge between two pixels covers half of each row that it cuts.
    const test::Picture moved =
        test::render(white.imageByApplyingTransform(CGAffineTransformMakeTranslation(0.5, 0)));
    EXPECT_NEAR(moved.at(0, 10)[3], 0.5, 0.01);
    EXPECT_NEAR(moved.at(1, 10)[3], 1, 0.01);
    const test::Picture flat = test::render(white.imageByApplyingTransform(CGAffineTransformMakeScale(0, 1)));
    for (float value : flat.values) EXPECT_EQ(value, 0);
}

TEST(MTIImage, EnclosingViewportHoldsThePictureAndNoMore) {
    const MTIImage image = dot(100, 60, 80, 10);
    const MTIImage turned =
        image.imageByApplyingTransform(CGAffineTransformMakeRotation(std::numbers::pi / 2), true);
    EXPECT_EQ(turned.size(), (CGSize{60, 100}));
    const Place place = brightPlace(test::render(turned));
    EXPECT_NEAR(place.x, 10, 0.02);
    EXPECT_NEAR(place.y, 19, 0.02);
    // Moving changes where the box is, not what is in it.
    const MTIImage moved = image.imageByApplyingTransform(CGAffineTransformMakeTranslation(300, -40), true);
    EXPECT_EQ(moved.size(), image.size());
    EXPECT_LT(test::worstDifference(test::render(moved), test::render(image)), 2e-3);
    const double angle = std::numbers::pi / 6;
    const CGSize size = image.imageByApplyingTransform(CGAffineTransformMakeRotation(angle), true).size();
    EXPECT_EQ(size.width, std::ceil(100 * std::cos(angle) + 60 * std::sin(angle)));
    EXPECT_EQ(size.height, std::ceil(100 * std::sin(angle) + 60 * std::cos(angle)));
    EXPECT_FALSE(image.imageByApplyingTransform(CGAffineTransformMakeScale(1000, 1), true));
    EXPECT_FALSE(image.imageByApplyingTransform(CGAffineTransformMakeScale(0, 1), true));
}

TEST(MTIImage, ShrinkingTakesTheMean) {
    // A fine checkerboard and stripes of one pixel: point sampling would show one colour or a moire.
    const MTIImage fine = MTIImage::imageWithBitmap(test::makeBitmap(240, 160, [](int x, int y) {
        const float v = float((x + y) % 2);
        return Pixel{v, float(x % 3 == 0), 0, 1};
    }));
    for (CGSize size : {CGSize{60, 40}, CGSize{61, 37}, CGSize{110, 70}, CGSize{24, 160}, CGSize{3, 2}}) {
        const test::Picture small = test::render(fine.resize(size));
        const double across = 240 / size.width;
        for (int x = 0; x < small.width; ++x) {
            double stripes = 0;  // the part of the pixel that stripes cover
            for (int stripe = 0; stripe < 240; stripe += 3) {
                stripes += std::max(
                    0.0, std::min(stripe + 1.0, (x + 1) * across) - std::max<double>(stripe, x * across));
            }
            for (int y = 0; y < small.height; ++y) {
                EXPECT_NEAR(small.at(x, y)[0], 0.5, 0.1) << size.width << " at " << x << " " << y;
                EXPECT_NEAR(small.at(x, y)[1], stripes / across, 0.1)
                    << size.width << " at " << x << " " << y;
            }
        }
    }
    const test::Picture shrunk =
        test::render(fine.imageByApplyingTransform(CGAffineTransformMakeScale(0.2, 0.2)));
    EXPECT_NEAR(shrunk.at(120, 80)[0], 0.5, 0.13);
    EXPECT_NEAR(shrunk.at(120, 80)[3], 1, 1e-3);
    EXPECT_NEAR(shrunk.at(90, 80)[3], 0, 1e-3);
    // Along one axis alone too: stripes three pixels apart, of which a pixel covers twenty.
    const test::Picture narrow =
        test::render(fine.imageByApplyingTransform(CGAffineTransformMakeScale(0.05, 1)));
    EXPECT_NEAR(narrow.at(120, 80)[1], 1.0 / 3, 0.1);
    EXPECT_NEAR(narrow.at(117, 80)[1], 1.0 / 3, 0.1);
}

TEST(MTIImage, ResizesBilinearly) {
    const MTIImage ramp = MTIImage::imageWithBitmap(test::makeBitmap(5, 1, [](int x, int) {
        return Pixel{float(x) / 4, 0, 0, 1};
    }));
    const test::Picture wide = test::render(ramp.resize({20.9, 2}));
    ASSERT_EQ(wide.width, 20);
    for (int x = 0; x < 20; ++x) {
        const double at = std::clamp((x + 0.5) / 4 - 0.5, 0.0, 4.0);
        EXPECT_NEAR(wide.at(x, 1)[0], at / 4, 0.004) << x;
    }
    EXPECT_EQ(ramp.resize({5, 1}), ramp);
    for (double side : {0.0, 0.99, -3.0, 16385.0, double(NAN), double(INFINITY)}) {
        EXPECT_FALSE(ramp.resize({side, 1})) << side;
    }
}

TEST(MTIImage, ReadsAlphaAsItIsTold) {
    Bitmap half{1, 1,
                std::make_shared<std::vector<std::uint8_t>>(std::vector<std::uint8_t>{200, 100, 0, 128})};
    auto pixel = [&](const MTIImage& image) { return test::render(image).at(0, 0); };
    auto expect = [](const Pixel& got, const Pixel& want) {
        for (std::size_t c = 0; c < 4; ++c) EXPECT_NEAR(got[c] * 255, want[c], 0.6) << c;
    };
    const MTIImage plain = MTIImage::imageWithBitmap(half);
    expect(pixel(plain), {200, 100, 0, 128});
    expect(pixel(MTIImage::imageWithBitmap(half, MTIAlphaType::nonPremultiplied)), {100, 50, 0, 128});
    expect(pixel(MTIImage::imageWithBitmap(half, MTIAlphaType::alphaIsOne)), {200, 100, 0, 255});
    const auto buffer = PixelBuffer::create(PixelFormat::rgba8, 1, 1);
    std::memcpy(buffer.plane(0).data, half.pixels->data(), 4);
    expect(pixel(MTIImage::imageWithPixelBuffer(buffer)), {100, 50, 0, 128});
    const MTIImage straight = plain.imageWithAlphaType(MTIAlphaType::nonPremultiplied);
    expect(pixel(straight), {100, 50, 0, 128});
    EXPECT_EQ(straight.alphaType(), MTIAlphaType::nonPremultiplied);
    const MTIImage opaque = straight.imageWithAlphaType(MTIAlphaType::alphaIsOne);
    expect(pixel(opaque), {200, 100, 0, 255});
    EXPECT_EQ(opaque.imageWithAlphaType(MTIAlphaType::premultiplied), plain);
}

TEST(MTIImage, NilAndImpossibleArgumentsGiveNilOrTheImage) {
    const MTIImage nil;
    EXPECT_EQ(nil.size(), (CGSize{0, 0}));
    EXPECT_EQ(nil.alphaType(), MTIAlphaType::unknown);
    EXPECT_FALSE(nil.imageByApplyingTransform({}));
    EXPECT_FALSE(nil.imageByApplyingTransform({}, true));
    EXPECT_FALSE(nil.resize({3, 3}));
    EXPECT_FALSE(nil.imageWithAlphaType(MTIAlphaType::alphaIsOne));
    EXPECT_FALSE(MTIImage::imageWithBitmap({}));
    EXPECT_FALSE(MTIImage::imageWithUIImage({}));
    EXPECT_FALSE(MTIImage::imageWithPixelBuffer({}));
    EXPECT_FALSE(MTIImage::imageWithContentsOfFile("/no/such/picture.png"));
    EXPECT_FALSE(MTIImage::initWithColor({1, 1, 1, 1}, true, {0, 5}));
    EXPECT_FALSE(MTIImage::initWithColor({NAN, 1, 1, 1}, true, {5, 5}));
    EXPECT_FALSE(MTIImage::initWithColor({}, false, {kMaximumImageSide + 1.0, 5}));
    const MTIImage image = MTIImage::initWithColor({1, 1, 1, 1}, true, {5.7, 4});
    EXPECT_EQ(image.extent(), CGRectMake(0, 0, 5, 4));
    EXPECT_EQ(image.imageByApplyingTransform({1, 0, 0, 1, NAN, 0}), image);
    EXPECT_EQ(image.imageByApplyingTransform({INFINITY, 0, 0, 1, 0, 0}, true), image);
    EXPECT_EQ(image.imageByApplyingTransform(CGAffineTransformIdentity), image);
}

TEST(ImageNode, EvaluationOrderListsEachNodeOnceAndCopesWithDepth) {
    const MTIImage source = MTIImage::initWithColor({1, 0, 0, 1}, false, {2, 2});
    MTIImage image = source;
    for (int i = 0; i < 2000; ++i)
        image = image.imageByApplyingTransform(CGAffineTransformMakeTranslation(1, 0));
    const auto order = evaluationOrder(image);
    ASSERT_EQ(order.size(), 2001u);
    EXPECT_EQ(order.front(), source.node().get());
    EXPECT_EQ(order.back(), image.node().get());
    EXPECT_TRUE(evaluationOrder({}).empty());
}

}  // namespace
}  // namespace qv
