// Bubbles, stars and ribbons: where every sprite is, and what the frame looks like with them.

#include <cmath>

#include "QVFilterExtension/MTIFilters/Effect/Particle/QVBubbleMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Particle/QVRibbonMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Particle/QVStarmapMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr CGSize kShapes[] = {{1920, 1080}, {1080, 1920}, {900, 900}, {640, 480}, {333, 1024}};
constexpr float kStrengths[] = {0, 0.013f, 0.25f, 0.5f, 0.51f, 0.8f, 1};
constexpr double kTimes[] = {0, 1 / 30., 0.7, 2, 13.37, 601.25, -1.5};

/// The matrix of a sprite, written out.
struct Expected {
    double size, turn, x, y;
    double alpha = 1, red = 1, green = 1, blue = 1;
};

double fractional(double value) {
    return value - std::floor(value);
}

std::vector<Expected> expectedBubbles(float v, double t, double width, double height) {
    const float ratio = float(height / width);
    const int count = int(29.0 * v + 1.0);
    const double base = 1.3 - 0.75 * v, offset = 0.1 + 0.8 * v;
    std::vector<Expected> all;
    for (double i = 1; i <= count; ++i) {
        const double px = fractional(sin(1256.23 * i) + sin(15.67 * i) * t * 0.03);
        const double py = fractional(sin(2398.34 * i) + sin(-89.12 * i) * t * 0.03);
        double s = fabs(base + (sin(1267.28 * i) - 0.5) * offset) * 0.2;
        if (ratio < 1) s = s * ratio;
        all.push_back({s, 0, cos(sin(34.56 * i) * t + i) * 0.1 + (2 * px - 1) * 1.2,
                       sin(cos(45.67 * i) * t + i) * 0.1 + (2 * py - 1) * ratio * 1.2});
    }
    return all;
}

std::vector<Expected> expectedStars(float v, double t, double width, double height) {
    const float ratio = float(height / width);
    float fastest = float(double(v) + 0.2);
    if (double(fastest) > 0.7) fastest = float((6.0 * (double(fastest) - 0.7) + 1.0) * double(fastest));
    std::vector<Expected> all;
    for (double i = 0; i < int(20.0 * v + 30.0); ++i) {
        const float f1 = float(fractional(sin(7.1234 * i)));
        const float radius = 0.1f + (0.8f - 0.1f) * f1;
        const float offset = 2.0f * float(fractional(sin(8.2345 * i)));
        const float speed = (f1 + 0.1f) * fastest;
        const float d = float(fmod(t * double(speed) + double(offset), 2.0));
        const float angle = float(2.0 * fractional(sin(5.3456 * i)) * 3.14);
        const double alpha = double(d * 0.5f * 5.0f) - 0.05;
        all.push_back({double(radius) * 0.6 * (double(d) * 0.5), 0, double(cosf(angle) * d),
                       double(ratio * (sinf(angle) * d)), fmin(fmax(alpha, 0.0), 1.0)});
    }
    return all;
}

std::vector<Expected> expectedRibbons(float v, double t, double width, double height) {
    const float ratio = float(height / width);
    const double base = 0.04 - 0.017 * v, rate = 0.15 * v + 0.09;
    std::vector<Expected> all;
    for (int index = 1; index < int(70.0 * v + 10.0); ++index) {
        const double i = index;
        const double px = fractional(sin(72.23 * i) + sin(35.67 * i) * t * 0.08);
        const double py = fractional(sin(23.34 * i) - rate * (fabs(sin(89.12 * i)) + 0.1) * t);
        const double k = index * 35678.4223;
        all.push_back({ratio > 1 ? base * ratio : base, sin(36.58 * i) * (t + 7.8) * 5.0, (2 * px - 1) * 1.2,
                       (2 * py - 1) * ratio * 1.2, 1, fmod(k * sin(4738.3174 * k), 0.35) + 0.7,
                       fmod(k * sin(6923.6125 * k), 0.35) + 0.45, fmod(k * sin(2846.3125 * k), 0.35) + 0.45});
    }
    return all;
}

struct Scatter {
    const char* name;
    const char* asset;
    std::vector<Expected> (*expected)(float, double, double, double);
    double tolerance;  ///< of places and sizes: what single precision leaves
};

constexpr Scatter kScatters[] = {
    {"QVBubbleMTIFilter", "filter_bubble.png", expectedBubbles, 1e-7},
    {"QVStarmapMTIFilter", "filter_star.png", expectedStars, 1e-6},
    {"QVRibbonMTIFilter", "filter_ribbon.png", expectedRibbons, 1e-7},
};

std::unique_ptr<SpriteScatterEffect> make(const char* name, const MTIImage& input) {
    auto effect = makeEffect<SpriteScatterEffect>(name);
    effect->setInputImage(input);
    return effect;
}

MTIImage grayFrame(CGSize size) {
    return MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, true, size);
}

/// What the image graph lists; nothing when the picture is the input itself.
std::vector<SpriteInstance> spritesOf(const MTIImage& image) {
    const auto* pass = std::get_if<SpritePass>(&image.node()->operation);
    return pass ? pass->sprites : std::vector<SpriteInstance>();
}

TEST(SpriteScatterEffect, EverySpriteIsWhereItsFormulasSay) {
    for (const Scatter& scatter : kScatters) {
        for (const CGSize size : kShapes) {
            const auto effect = make(scatter.name, grayFrame(size));
            for (const float strength : kStrengths) {
                effect->setEffectValue(strength);
                for (const double time : kTimes) {
                    SCOPED_TRACE(testing::Message() << scatter.name << " " << size.width << "x" << size.height
                                                    << " strength " << strength << " time " << time);
                    effect->setITime(time);
                    const auto sprites = spritesOf(effect->outputImage());
                    const auto expected = scatter.expected(strength, time, size.width, size.height);
                    ASSERT_EQ(sprites.size(), expected.size());
                    for (std::size_t i = 0; i < sprites.size(); ++i) {
                        const CGAffineTransform& t = sprites[i].transform;
                        const Expected& e = expected[i];
                        const double turn = std::cos(e.turn), lean = std::sin(e.turn);
                        const double actual[] = {t.a, t.b, t.c, t.d, t.tx, t.ty};
                        const double wanted[] = {e.size * turn, e.size * lean, -e.size * lean,
                                                 e.size * turn, e.x,           e.y};
                        for (int k = 0; k < 6; ++k) ASSERT_NEAR(actual[k], wanted[k], scatter.tolerance) << i;
                        const auto& [red, green, blue, alpha] = sprites[i].tint;
                        const Pixel tint{float(e.red), float(e.green), float(e.blue), float(e.alpha)};
                        ASSERT_LT(difference({red, green, blue, sprites[i].alpha}, tint), 1e-6) << i;
                        ASSERT_EQ(sprites[i].texture->name, scatter.asset);
                    }
                }
            }
        }
    }
}

TEST(SpriteScatterEffect, IsTheInputUntilAStrengthIsSetUnlessItIsRibbons) {
    const MTIImage input = grayFrame({160, 90});
    QVBubbleMTIFilter bubbles;
    QVStarmapMTIFilter stars;
    QVRibbonMTIFilter ribbons;
    bubbles.setInputImage(input), stars.setInputImage(input), ribbons.setInputImage(input);
    EXPECT_EQ(bubbles.outputImage(), input);
    EXPECT_EQ(stars.outputImage(), input);
    EXPECT_EQ(spritesOf(ribbons.outputImage()).size(), 44u) << "the default strength, a half";
}

}  // namespace
}  // namespace qv::test
