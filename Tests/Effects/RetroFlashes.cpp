// The retro flashes play as the C library's random numbers say; the effects made of them need not be played
// in order, and do not repeat themselves.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>

#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroFramFlashFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroSideFlashFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr float kStrengths[] = {0, 0.13f, 0.25f, 0.49f, 0.5f, 0.7f, 0.99f, 1};
constexpr double kFrame = 0.03333333333333333;

long drawn(std::uint32_t seed) {
    srandom(seed);
    return random();
}
double unitOf(std::uint32_t seed) {
    return double(float(drawn(seed) % 10000000) / 9999999.0f);
}

/// In the middle of a frame.
double timeOf(double frame) {
    return (frame + 0.5) * kFrame;
}

TEST(RetroFlashes, TheEdgeChangesEachSecondAndItsColourAFrameLater) {
    const float colors[4][3] = {{1, float(143. / 255), float(45. / 255)},
                                {float(254. / 255), float(195. / 255), float(45. / 255)},
                                {1, float(249. / 255), float(231. / 255)},
                                {1, float(242. / 255), float(199. / 255)}};
    std::set<int> seen;
    for (const float strength : kStrengths) {
        QVRetroFramFlashFilter played;
        played.setEffectValue(strength);
        int before = 0;
        for (int frame = 0; frame < 20 * 30; ++frame) {
            QVRetroFramFlashFilter settled;
            settled.setEffectValue(strength);
            const int side = int(drawn(std::uint32_t(4.0 * strength + frame / 30 * 30 + 1250)) % 4);
            for (QVRetroFramFlashFilter* flash : {&played, &settled}) {
                flash->setITime(timeOf(frame));
                if (flash == &settled) settled.settle();
                const MTIParameters all = flash->parameters();
                SCOPED_TRACE(testing::Message() << "strength " << strength << " frame " << frame);
                ASSERT_EQ(uniform<std::int32_t>(all, "side"), side);
                const auto color = uniform<MTIVector>(all, "color");
                for (int c = 0; c < 3; ++c) ASSERT_EQ(color[std::size_t(c)], colors[before][c]);
                ASSERT_EQ(uniform<float>(all, "motionProgress"), std::min(float(frame % 30) / 5, 1.0f));
            }
            seen.insert(before = side);
        }
    }
    EXPECT_EQ(seen.size(), 4u);
}

TEST(RetroFlashes, TheEdgeOnPhotosAndAtTheEndOfTime) {
    QVRetroFramFlashFilter flash;
    flash.setIsPhoto(true);
    flash.setEffectValue(0.3f);
    EXPECT_EQ(uniform<float>(flash.parameters(), "motionProgress"), 0.3f);
    EXPECT_EQ(flash.side(), 3);
    flash.setIsPhoto(false);
    flash.setSide(1);
    flash.setITime(143165577.5);
    EXPECT_EQ(uniform<std::int32_t>(flash.parameters(), "side"), 1) << "no more seconds to count";
    EXPECT_EQ(flash.colorVector(), flash.framColors()[0]) << "nor a new colour";
    flash.setITime(143165576.5);
    flash.parameters();
    EXPECT_EQ(flash.colorVector(), flash.framColors()[1]);
    EXPECT_EQ(flash.side(),
              drawn(std::uint32_t(std::uint64_t(4 * double(0.3f) + 30. * 143165576 + 1250))) % 4);
}

TEST(RetroFlashes, TheSideGlowMovesEveryFewFrames) {
    for (const bool mix : {false, true}) {
        for (const float strength : kStrengths) {
            QVRetroSideFlashFilter played;
            played.setEffectValue(strength);
            played.setMixColor(mix);
            const double e = strength;
            const int period = int(e < 0.5 ? 10 - 14 * e : 3 - 4 * (e - 0.5));
            double x = 0, y = 0;
            // It starts between two changes, where it chooses all the same.
            for (int frame = 31; frame < 31 + 200; ++frame) {
                if (frame % period == 0 || frame == 31) {
                    y = std::clamp(unitOf(std::uint32_t(period + frame + 1367)), 0.5, 1.0);
                    x = std::clamp(unitOf(std::uint32_t(period + frame + 1323)), mix ? 0.18 : 0.1, 0.2);
                }
                const int f = frame % 90;
                const int type = !mix ? 0 : f >= 7 && f <= 9 ? 1 : f == 10 || f == 11 ? 2 : f == 12 ? 1 : 0;
                played.setITime(timeOf(frame));
                const MTIParameters all = played.parameters();
                SCOPED_TRACE(testing::Message() << "strength " << strength << " frame " << frame);
                ASSERT_EQ(uniform<float>(all, "randomX"), float(x));
                ASSERT_EQ(uniform<float>(all, "randomY"), float(y));
                ASSERT_EQ(uniform<bool>(all, "mixColor"), mix);
                ASSERT_EQ(uniform<std::int32_t>(all, "colorType"), type);

                QVRetroSideFlashFilter settled;
                settled.setEffectValue(strength);
                settled.setMixColor(mix);
                settled.setITime(timeOf(frame));
                settled.settle();
                if (frame >= 40) {
                    ASSERT_EQ(settled.parameters(), all);
                }
            }
        }
    }
}

constexpr const char* kComposites[] = {
    "QVRetroBWMTIFilter",  "QVRetroLightMTIFilter",   "QVRetroNoiseMTIFilter",     "QVRetroRECMTIFilter",
    "QVRetroVHSMTIFilter", "QVRetroNoisyImageFilter", "QVRetroVideoMTIImageFilter"};

/// All that a graph says: its passes with their uniforms, and its sprites.
struct Listing {
    std::vector<std::pair<std::string, MTIParameters>> passes;
    std::vector<double> sprites;
    bool operator==(const Listing&) const = default;
};

Listing listingOf(const MTIImage& image) {
    Listing listing;
    for (const DrawnPass& pass : drawnPasses(image))
        listing.passes.emplace_back(pass.function, *pass.parameters);
    for (const ImageNode* node : evaluationOrder(image))
        if (const auto* pass = std::get_if<SpritePass>(&node->operation))
            for (const SpriteInstance& sprite : pass->sprites)
                for (const double number :
                     {sprite.transform.a, sprite.transform.tx, sprite.transform.ty, double(sprite.alpha)})
                    listing.sprites.push_back(number);
    return listing;
}

TEST(RetroFlashes, AMinuteOfEachEffectIsTheSameInAnyOrderAndNeverTheSameTwice) {
    for (const char* name : kComposites) {
        const auto played = makeEffect(name);
        played->setInputImage(MTIImage::initWithColor({0.5f, 0.4f, 0.3f, 1}, false, {160, 90}));
        std::map<std::vector<double>, int> sprites;
        std::set<std::string> functions;
        for (int frame = 0; frame < 60 * 30; ++frame) {
            played->setITime(timeOf(frame));
            const Listing listing = listingOf(played->outputImage());
            for (const auto& [function, uniforms] : listing.passes) functions.insert(function);
            if (!listing.sprites.empty()) ++sprites[listing.sprites];
            if (frame % 37 != 0) continue;
            const auto alone = makeEffect(name);
            alone->setInputImage(played->inputImage());
            alone->setITime(timeOf(frame));
            ASSERT_EQ(listingOf(alone->outputImage()), listing) << name << " frame " << frame;
        }
        EXPECT_TRUE(functions.contains(name));
        // Sprites stay for a few frames, 8 at most, and do not come back in the same places.
        for (const auto& [places, frames] : sprites) EXPECT_LE(frames, 8) << name;
    }
}

TEST(RetroFlashes, EffectsBearStripsAndSizesThatChange) {
    std::vector<const char*> names(std::begin(kComposites), std::end(kComposites));
    names.insert(names.end(), {"QVCameraRECFilter", "QVCameraFreezeMTIFilter", "QVCameraCircleBlurFilter",
                               "QVCameraFlashMTiFilter", "QVCameraLightFilter"});
    for (const char* name : names) {
        const auto effect = makeEffect(name);
        Picture first;
        for (const auto& [width, height] : {std::pair{96, 54}, {2, 2}, {8192, 16}, {54, 96}, {96, 54}}) {
            effect->setInputImage(plainImage(width, height, {0.5f, 0.4f, 0.3f, 1}));
            for (const double time : {-3.0, 4.2, 0.3}) {
                effect->setITime(time);
                const Picture picture = render(effect->outputImage());
                EXPECT_EQ(std::pair(picture.width, picture.height), std::pair(width, height)) << name;
                if (width != 96 || time != 0.3) continue;
                if (first.values.empty()) first = picture;
                EXPECT_TRUE(matches(picture, first, 1.5 / 255)) << name << ": as before the size changed";
            }
        }
    }
}

}  // namespace
}  // namespace qv::test
