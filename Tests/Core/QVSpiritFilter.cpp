#include "QVFilterCore/QVSpiritFilter.h"

#include <numbers>

#include "Platform/ImageGraph/ImageNode.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

constexpr double kQuarterTurn = std::numbers::pi / 2;
constexpr Pixel kRed = {1, 0, 0, 1}, kGreen = {0, 1, 0, 1}, kBlue = {0, 0, 1, 1}, kWhite = {1, 1, 1, 1};
constexpr Pixel kGround = {0.2f, 0.4f, 0.6f, 1};

SpiritParam::Texture flatTexture(const Pixel& color, int width = 8, int height = 8) {
    return SpiritParam::spiritTextureWithImage(
        UIImage(makeBitmap(width, height, [&](int, int) { return color; })));
}

/// Twice as wide as high: red left, green right, and its lower half blue.
SpiritParam::Texture markedTexture() {
    return SpiritParam::spiritTextureWithImage(UIImage(makeBitmap(64, 32, [](int x, int y) {
        return y >= 16 ? kBlue : x < 32 ? kRed : kGreen;
    })));
}

MTIImage ground(int width, int height) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, [](int, int) { return kGround; }));
}

Picture drawn(const MTIImage& input, std::vector<SpiritParam> params) {
    QVSpiritFilter filter;
    filter.setInputImage(input);
    filter.setParams(std::move(params));
    return render(filter.outputImage());
}

void expectColor(const Picture& picture, int x, int y, const Pixel& color, double tolerance = 1.5 / 255) {
    EXPECT_LE(difference(picture.at(x, y), color), tolerance) << "at " << x << "," << y;
}

/// A scaled sprite's place.
CGAffineTransform placed(double size, double x, double y) {
    return CGAffineTransformConcat(CGAffineTransformMakeScale(size, size),
                                   CGAffineTransformMakeTranslation(x, y));
}

TEST(QVSpiritFilter, UntransformedSpansTheWidthWithItsOwnAspect) {
    for (const auto& [width, height] : {std::pair{128, 128}, std::pair{128, 64}, std::pair{64, 128}}) {
        const Picture picture =
            drawn(ground(width, height), {SpiritParam::paramWithTrans({}, markedTexture())});
        const int top = (height - width / 2) / 2, bottom = top + width / 2, middle = height / 2;
        expectColor(picture, 2, top + 2, kRed);
        expectColor(picture, width - 3, top + 2, kGreen);
        expectColor(picture, width / 2 - 3, middle - 3, kRed);
        expectColor(picture, width / 2 + 2, middle - 3, kGreen);
        expectColor(picture, 2, bottom - 3, kBlue);
        if (top > 2) {
            expectColor(picture, 2, top - 3, kGround);
            expectColor(picture, width / 2, bottom + 2, kGround);
        }
    }
}

TEST(QVSpiritFilter, TransformsInSpriteSpace) {
    // Frame units: 100 pixels are 1, up is positive. The sprite is 50 by 25 pixels, then turned
    // anticlockwise.
    const CGAffineTransform scaled = CGAffineTransformMakeScale(0.25, 0.25);
    const CGAffineTransform turned = CGAffineTransformMakeRotation(kQuarterTurn);
    const CGAffineTransform moved = CGAffineTransformMakeTranslation(0.5, 0.3);
    const Picture picture =
        drawn(ground(200, 160),
              {SpiritParam::paramWithTrans(
                  CGAffineTransformConcat(CGAffineTransformConcat(scaled, turned), moved), markedTexture())});
    // Its centre is at (150, 50); the marks have turned: blue (below) to the right, green (right) to the top.
    const std::tuple<int, int, Pixel> marks[] = {{155, 50, kBlue},  {145, 40, kGreen},  {145, 60, kRed},
                                                 {145, 28, kGreen}, {145, 22, kGround}, {135, 50, kGround},
                                                 {165, 50, kGround}};
    for (const auto& [x, y, color] : marks) expectColor(picture, x, y, color);

    // In the drawing order of contexts the last named step comes first: the scale does not shrink the way.
    const Picture other = drawn(
        ground(200, 160), {SpiritParam::paramWithTrans(
                              CGAffineTransformScale(CGAffineTransformTranslate({}, -0.5, -0.3), 0.1, 0.1),
                              flatTexture(kWhite))});
    expectColor(other, 50, 110, kWhite);
    expectColor(other, 57, 103, kWhite);
    expectColor(other, 64, 110, kGround);
}

TEST(QVSpiritFilter, AlphaAndTintScaleTheTexture) {
    const Pixel texel = {0.8f, 0.6f, 0.4f, 0.5f};
    const auto texture = flatTexture(texel);
    const UIColor tint(0.5, 1, 1.05, 0.8);
    const std::pair<SpiritParam, Pixel> cases[] = {
        {SpiritParam::paramWithTrans({}, texture), {1, 1, 1, 1}},
        {SpiritParam::paramWithTrans({}, 0.25f, texture), {1, 1, 1, 0.25f}},
        {SpiritParam::paramWithTrans({}, tint, texture), {0.5f, 1, 1.05f, 0.8f}},
        {SpiritParam::paramWithTrans({}, 0.5f, tint, texture), {0.5f, 1, 1.05f, 0.4f}},
    };
    for (const auto& [param, factor] : cases) {
        const Picture picture = drawn(ground(16, 16), {param});
        const float alpha = texel[3] * factor[3];
        Pixel color{0, 0, 0, 1};
        for (std::size_t c = 0; c < 3; ++c)
            color[c] = texel[c] * factor[c] * alpha + kGround[c] * (1 - alpha);
        expectColor(picture, 8, 8, color, 2.5f / 255);
    }
}

TEST(QVSpiritFilter, LaterSpritesLieOnTopWhateverTheirTexture) {
    // Each of 60 textures twice: first everywhere in reverse order, then in its own cell.
    constexpr int kCells = 60;
    std::vector<SpiritParam::Texture> textures;
    for (int i = 0; i < kCells; ++i)
        textures.push_back(
            flatTexture({float(i) / kCells, 1 - float(i) / kCells, float(i % 7) / 7, 1}, 200 + i % 5, 200));
    std::vector<SpiritParam> params;
    for (int i = kCells - 1; i >= 0; --i)
        params.push_back(SpiritParam::paramWithTrans({}, textures[std::size_t(i)]));
    auto centerOf = [](int i) { return CGPoint{(i % 10) * 0.2 - 0.9, 0.5 - (i / 10) * 0.2}; };
    for (int i = 0; i < kCells; ++i) {
        params.push_back(SpiritParam::paramWithTrans(placed(0.08, centerOf(i).x, centerOf(i).y),
                                                     textures[std::size_t(i)]));
    }
    const Picture picture = drawn(ground(200, 200), params);
    for (int i = 0; i < kCells; ++i) {
        expectColor(picture, int(100 + 100 * centerOf(i).x), int(100 - 100 * centerOf(i).y),
                    {float(i) / kCells, 1 - float(i) / kCells, float(i % 7) / 7, 1});
    }
    expectColor(picture, 2, 100, {0, 1, 0, 1});
}

TEST(QVSpiritFilter, TransparentCornersAreCutWithoutATrace) {
    // The same picture with the faintest of marks in its corners is drawn whole.
    constexpr std::pair<const char*, bool (*)(float x, float y)> kShapes[] = {
        {"disc", [](float x, float y) { return std::hypot(x, y) < 0.9f; }},
        {"dot", [](float x, float y) { return std::hypot(x - 0.6f, y + 0.5f) < 0.1f; }},
        {"stroke", [](float x, float y) { return std::abs(x - 0.8f * y) < 0.06f; }},
        {"bar on the edge", [](float x, float y) { return y > 0.85f && x < 0.3f; }},
    };
    for (const auto& [name, holds] : kShapes) {
        const auto texture = [inside = holds](bool marked) {
            constexpr int kWidth = 90, kHeight = 61;
            return SpiritParam::spiritTextureWithImage(UIImage(makeBitmap(kWidth, kHeight, [&](int x, int y) {
                const bool corner = (x == 0 || x == kWidth - 1) && (y == 0 || y == kHeight - 1);
                if (inside(float(x) / kWidth * 2 - 1, float(y) / kHeight * 2 - 1)) return kWhite;
                return Pixel{1, 1, 1, marked && corner ? 1 / 255.f : 0};
            })));
        };
        const auto cut = texture(false), whole = texture(true);
        for (const double size : {0.95, 0.5, 0.14, 0.03}) {
            for (const double turn : {0.0, 0.6, 2.1}) {
                const CGAffineTransform place = CGAffineTransformScale(
                    CGAffineTransformRotate(CGAffineTransformMakeTranslation(0.03, 0.02), turn), size, -size);
                const Picture a = drawn(ground(200, 200), {SpiritParam::paramWithTrans(place, cut)});
                const Picture b = drawn(ground(200, 200), {SpiritParam::paramWithTrans(place, whole)});
                EXPECT_TRUE(matches(a, b, 1.1 / 255)) << name << " " << size << " " << turn;
                EXPECT_GT(worstDifference(a, drawn(ground(200, 200), {})), 0.02) << name;
            }
        }
    }
}

TEST(QVSpiritFilter, ReducedPicturesStayInPlace) {
    // A ramp of a width that no halving divides evenly.
    const auto ramp = SpiritParam::spiritTextureWithImage(UIImage(makeBitmap(101, 37, [](int x, int) {
        return Pixel{(float(x) + 0.5f) / 101, 0, 0, 1};
    })));
    for (const double pixels : {150.0, 70.0, 40.0, 21.0, 9.0}) {
        const double size = pixels / 200;
        const Picture picture = drawn(
            ground(200, 50), {SpiritParam::paramWithTrans(CGAffineTransformMakeScale(size, size), ramp)});
        const int first = int(std::ceil(100 - pixels / 2)), end = int(100 + pixels / 2);
        for (int x = first; x < end; ++x) {
            const double u = (x + 0.5 - (100 - pixels / 2)) / pixels;
            // Half a texel at the ends is flat.
            EXPECT_NEAR(picture.at(x, 25)[0], u, 0.55 / std::min(pixels, 101.0)) << pixels << " wide, " << x;
            EXPECT_NEAR(picture.at(x, 25)[2], 0, 1e-3);
        }
    }
}

TEST(QVSpiritFilter, WhatCannotBeSeenLeavesTheInput) {
    const auto texture = flatTexture(kWhite);
    const MTIImage input = ground(32, 16);
    QVSpiritFilter filter;
    filter.setInputImage(input);
    EXPECT_EQ(filter.outputImage(), input) << "no sprites";
    EXPECT_FALSE(SpiritParam::spiritTextureWithImage(UIImage()));

    filter.setParams({SpiritParam::paramWithTrans({}, nullptr), SpiritParam::paramWithTrans({}, NAN, texture),
                      SpiritParam::paramWithTrans({NAN, 0, 0, 1, 0, 0}, texture)});
    EXPECT_EQ(filter.outputImage(), input) << "only impossible ones";

    filter.setParams({SpiritParam::paramWithTrans({}, 0.0f, texture),
                      SpiritParam::paramWithTrans(CGAffineTransformMakeScale(0, 0), texture),
                      SpiritParam::paramWithTrans(placed(0.1, 1.2, 0), texture),
                      SpiritParam::paramWithTrans(placed(0.1, 0, -0.7), texture)});
    const MTIImage hidden = filter.outputImage();
    EXPECT_TRUE(matches(render(hidden), render(input), 0));
    QVSpiritFilter over;
    over.setInputImage(hidden);
    over.setParams({SpiritParam::paramWithTrans({}, texture)});
    const auto task = context()->startRender(over.outputImage());
    ASSERT_TRUE(task && task->wait());
    EXPECT_EQ(task->statistics().passes, 1) << "no pass for what cannot be seen";

    // A sprite half outside shows its inner half; it keeps what the frame has of transparency outside itself.
    const MTIImage clear = MTIImage::initWithColor({0, 0, 0, 0}, false, {32, 32});
    const Picture picture = drawn(clear, {SpiritParam::paramWithTrans(placed(0.5, 1, 0), texture)});
    expectColor(picture, 28, 16, kWhite);
    expectColor(picture, 20, 16, {0, 0, 0, 0});
}

}  // namespace
}  // namespace qv::test
