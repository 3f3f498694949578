// Transitions through pictures: which picture is drawn, how it is fitted and kept, and the flicker of the
// light.

#include <cmath>
#include <cstdlib>
#include <limits>

#include "QVFilterExtension/MTIFilters/Transition/Dissolve/QVPhotoDissolveTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Flash/QVFlashPicTransitionMTIFilter.h"
#include "Tests/Support/TemporaryBundle.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Dissolve = QVPhotoDissolveTransitionMTIFilter;
using Flash = QVFlashPicTransitionMTIFilter;

std::int64_t drawnByTheCLibrary(std::uint64_t seed) {
    srandom(unsigned(seed));
    return random();
}

CMTimeRange span(std::int64_t start, std::int64_t duration, std::int32_t scale) {
    return {{start, scale}, {duration, scale}};
}

/// A resource bundle with numbered pictures of 160×90, whose red rises to the right and whose green
/// downwards.
class PhotoDissolve : public testing::Test {
  protected:
    PhotoDissolve() {
        for (int i = 0; i < 4; ++i)
            bundle_->write("ramps_0" + std::to_string(i) + ".png", rampsBitmap(160, 90, 0));
    }

    std::unique_ptr<TemporaryBundle> bundle_ = std::make_unique<TemporaryBundle>();
    Dissolve ramps_{"ramps_", 4};
};

TEST_F(PhotoDissolve, HasFiveStyles) {
    // The prefix of its files; whether they are cropped, turned, and run from bright to dark.
    const std::tuple<std::string, bool, bool, bool> styles[] = {{"tran_photo_flow_", false, false, false},
                                                                {"tran_photo_fade_", false, false, false},
                                                                {"tran_photo_facula_", true, false, false},
                                                                {"tran_photo_stroke_", false, false, false},
                                                                {"tran_photo_radial_", false, true, true}};
    for (std::int64_t type : {4, 3, 2, 1, 0}) {
        const auto made = Dissolve::filterWithType(type);
        EXPECT_EQ(std::tuple(made->prefix(), made->needCrop(), made->needRotate(), made->fromBrightToDark()),
                  styles[type]);
        EXPECT_EQ(made->count(), 4);
    }
    const auto byName = makeEffect<Dissolve>("QVPhotoDissolveTransitionMTIFilter");
    for (std::int64_t type : {-1, 5, 1000}) {
        EXPECT_FALSE(Dissolve::filterWithType(type));
        byName->setType(4);
        byName->setType(type);
        EXPECT_EQ(byName->prefix(), std::get<0>(styles[0]));
        EXPECT_FALSE(byName->fromBrightToDark());
    }
}

TEST_F(PhotoDissolve, DrawsThePictureFromTheTransitionsEnd) {
    const struct {
        CMTimeRange range;
        std::uint64_t tenths;
    } cases[] = {
        {span(0, 600, 600), 10},
        {span(0, 659, 600), 10},
        {span(0, 660, 600), 11},
        {span(1500, 750, 600), 37},
        {{{1, 3}, {1, 7}}, 4},
        {span(146191 * 6, 0, 60), 146191},
        {span(-100, 50, 600), 0},
        {span(-3, 1, 1), std::uint64_t(0) - 20},
        {span(std::int64_t(1) << 40, 0, 1), 10 * (std::uint64_t(1) << 40)},
        {span(429496730, 0, 1), 4},
        {span(5, 7, 0), 0},
    };
    for (const auto& each : cases) {
        // The product wraps at 32 bits.
        const std::int64_t draw = drawnByTheCLibrary((each.tenths * 29379 + 37168) & 0xffffffff);
        for (std::int64_t count : {1, 4, 7, 100, -3}) {
            ramps_.setCount(count);
            EXPECT_EQ(ramps_.photoImageIndexFromTimeRange(each.range), draw % count) << each.tenths;
        }
        ramps_.setCount(0);
        EXPECT_EQ(ramps_.photoImageIndexFromTimeRange(each.range), 0);
    }
}

TEST_F(PhotoDissolve, FitsThePictureToTheFrame) {
    // Where the corner pixels of the prepared picture lie in the file, from its top left.
    struct Corner {
        double x, y;
    };
    const struct {
        bool crop, rotate;
        CGSize frame, size;
        Corner topLeft, bottomRight;
    } cases[] = {
        {false, false, {45, 80}, {160, 90}, {0.5, 0.5}, {159.5, 89.5}},
        // A frame pixel is 1.5 of the 120 in the middle; 1.125 of the 90.
        {true, false, {80, 60}, {80, 60}, {20.75, 0.75}, {139.25, 89.25}},
        {true, false, {80, 80}, {80, 80}, {35.5625, 0.5625}, {124.4375, 89.4375}},
        {true, false, {120, 30}, {120, 30}, {2.0 / 3, 25 + 2.0 / 3}, {160 - 2.0 / 3, 65 - 2.0 / 3}},
        // Turned against the clock: the right side comes to the top.
        {true, false, {45, 80}, {45, 80}, {159, 1}, {1, 89}},
        {true, false, {30, 60}, {30, 60}, {160 - 4.0 / 3, 5 + 4.0 / 3}, {4.0 / 3, 85 - 4.0 / 3}},
        {false, true, {45, 80}, {90, 160}, {159.5, 0.5}, {0.5, 89.5}},
        {false, true, {80, 80}, {160, 90}, {0.5, 0.5}, {159.5, 89.5}},
        {false, true, {80, 45}, {160, 90}, {0.5, 0.5}, {159.5, 89.5}},
        {true, true, {45, 80}, {80, 45}, {159, 89}, {1, 1}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(testing::Message() << each.frame.width << "x" << each.frame.height << " crop "
                                        << each.crop << " rotate " << each.rotate);
        ramps_.setNeedCrop(each.crop);
        ramps_.setNeedRotate(each.rotate);
        ramps_.setInputImage1(MTIImage::initWithColor({1, 0, 0, 1}, true, each.frame));
        ASSERT_EQ(ramps_.photoImage().size(), each.size);
        const Picture photo = render(ramps_.photoImage());
        const auto expectPlace = [](Pixel pixel, Corner corner) {
            EXPECT_NEAR(pixel[0] * 160, corner.x, 0.5);
            EXPECT_NEAR(pixel[1] * 90, corner.y, 0.3);
            EXPECT_NEAR(pixel[3], 1, 1e-3);
        };
        expectPlace(photo.at(0, 0), each.topLeft);
        expectPlace(photo.at(photo.width - 1, photo.height - 1), each.bottomRight);
    }
}

TEST_F(PhotoDissolve, RunsThroughTheGreysInBothDirections) {
    bundle_->write("greys_00.png", makeBitmap(64, 2, [](int x, int) {
                       return Pixel{float(x) / 63, float(x) / 63, float(x) / 63, 1};
                   }));
    Dissolve greys{"greys_", 1};
    const Pixel red{0.8f, 0.1f, 0.1f, 1}, blue{0.1f, 0.1f, 0.7f, 1};
    greys.setInputImage1(plainImage(64, 2, red));
    greys.setInputImage2(plainImage(64, 2, blue));
    ASSERT_TRUE(greys.photoImage());
    bundle_.reset();  // the shaders lie in the library's own
    for (const bool fromBright : {false, true}) {
        greys.setFromBrightToDark(fromBright);
        for (const float progress : {0.0f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 1.0f}) {
            greys.setProgress(progress);
            const Picture picture = render(greys.outputImage());
            for (int x = 0; x < 64; ++x) {
                const double turn = (fromBright ? 63 - x : x) / 63.0, distance = turn - greys.newProgress();
                // The front is an eighth of the greys wide.
                if (std::abs(distance) < 0.126 && progress != 0 && progress != 1) continue;
                const bool changed = distance < 0 || progress == 1;
                EXPECT_LT(difference(picture.at(x, 0), changed ? blue : red), 0.5 / 255 + 1e-3)
                    << x << " at " << progress;
            }
        }
    }
}

/// A span of `duration` seconds from where the flash's draw of 0..99 for a progress satisfies `wanted`.
template <typename Wanted>
CMTimeRange spanWhere(double duration, double progress, Wanted&& wanted) {
    for (std::int64_t start = 0;; ++start)
        if (wanted(drawnByTheCLibrary(std::uint64_t(duration * 10 * progress + double(start) + 10)) % 100))
            return {{start, 100}, CMTimeMakeWithSeconds(duration, 10000)};
}

double alphaAt(CMTimeRange range, float progress) {
    Flash flash{UIImage()};
    flash.setTimeRange(range);
    flash.setProgress(progress);
    return flash.alpha();
}

TEST(FlashPicture, DrawsFromTheSpanAndTheMoment) {
    Flash flash{UIImage()};
    flash.setTimeRange({{90210, 30000}, {75, 50}});
    for (const double t : {0.0, 0.25, 0.3, 1.0})
        for (const std::int64_t off : {0, 6, 10})
            EXPECT_EQ(flash.gRandonm(t, off), drawnByTheCLibrary(std::uint64_t(15 * t) + 90210 + off)) << t;
    // Seeds wrap at 32 bits: −5000 + 5 + 10, 2³² + 5 + 10, 2⁵⁰ + 4 + 5 + 10.
    flash.setTimeRange(span(-5000, 1, 1));
    EXPECT_EQ(flash.gRandonm(0.5, 10), drawnByTheCLibrary(4294962311));
    flash.setTimeRange(span(std::int64_t(1) << 32, 1, 1));
    EXPECT_EQ(flash.gRandonm(0.5, 10), drawnByTheCLibrary(15));
    flash.setTimeRange(span((std::int64_t(1) << 50) + 4, 1, 1));
    EXPECT_EQ(flash.gRandonm(0.5, 10), drawnByTheCLibrary(19));
    flash.setTimeRange(span(0, 1, 1));
    EXPECT_EQ(flash.gRandonm(std::numeric_limits<double>::quiet_NaN(), 10), drawnByTheCLibrary(0));
}

TEST(FlashPicture, ARangeInSecondsFlickersTheSameHoweverItCame) {
    Flash flash{UIImage()};
    // 5000 s lie beyond 32 bits in millionths; 90,000 a second, 15 tenths of the duration, half of them gone.
    EXPECT_TRUE(setPropertyFromText(flash, "timeRange", "5000.5,1.5", nullptr));
    EXPECT_EQ(flash.gRandonm(0.5, 10), drawnByTheCLibrary(450045000 + 7 + 10));
    EXPECT_EQ(flash.timeRange(), CMTimeRangeMakeWithSeconds(5000.5, 1.5));
    EXPECT_TRUE(setPropertyFromText(flash, "timeRange", "50000,1", nullptr));
    EXPECT_EQ(flash.gRandonm(0.5, 10), drawnByTheCLibrary(4500000000 - 4294967296 + 5 + 10));
}

TEST(FlashPicture, FlickersMoreOftenTowardsTheCut) {
    // A quarter in, half the pulse's peak of 50: 30 of 100 draws are lit.
    const auto is = [](int value) { return [value](std::int64_t draw) { return draw == value; }; };
    EXPECT_EQ(alphaAt(spanWhere(1, 0.25, is(30)), 0.25f), 0);
    EXPECT_NEAR(alphaAt(spanWhere(1, 0.25, is(29)), 0.25f), 1, 1e-12);
    // Within a fifth of a second of the cut, but not at it, whatever is drawn; elsewhere by the draw.
    ASSERT_EQ(0.5 - 0.2 / 0.64, 0.1875);
    const auto unlit = [](std::int64_t draw) { return draw > 60; };
    const CMTimeRange shortSpan = spanWhere(0.64, 0.1875, unlit);
    EXPECT_EQ(alphaAt(shortSpan, 0.1875f), 0);
    EXPECT_NEAR(alphaAt(shortSpan, std::nextafter(0.1875f, 1.0f)), std::abs(std::sin(1.2 * M_PI)), 1e-5);
    // Ten pulses a second, none at the start; a span without length is lit throughout, but has no pulse.
    EXPECT_NEAR(alphaAt(span(0, 2, 1), 0.5f), 0, 1e-12);
    EXPECT_NEAR(alphaAt(span(0, 2, 1), 0.525f), 1, 1e-6);
    EXPECT_EQ(alphaAt(span(0, 0, 1), 0.525f), 0);
}

TEST(FlashPicture, FlaresAtTheCut) {
    const std::pair<float, float> cases[] = {
        {0, 0}, {0.375f, 0}, {0.4375f, 0.3f}, {0.5f, 0.6f}, {0.53125f, 0.45f}, {0.625f, 0}, {1, 0}};
    Flash flash{UIImage()};
    flash.setTimeRange(span(4200, 600, 600));
    for (const auto& [progress, stops] : cases) {
        flash.setProgress(progress);
        EXPECT_EQ(flash.brightness(), double(stops)) << progress;
        const std::int64_t draw = drawnByTheCLibrary(std::uint64_t(10 * double(progress)) + 4200 + 6);
        EXPECT_DOUBLE_EQ(flash.time(), 7 + double(draw % 10000) / 100) << progress;
    }
}

TEST(FlashPicture, ScreensTheWarpedLightOverTheClipOfTheMoment) {
    const Pixel dim{0.2f, 0.3f, 0.4f, 1}, other{0.5f, 0.1f, 0.3f, 1};
    const auto seen = [&](float light, float progress, auto&& set) {
        Flash flash{UIImage(makeBitmap(8, 8, [&](int, int) { return Pixel{light, light, light, 1}; }))};
        flash.setInputImage1(plainImage(32, 18, dim));
        flash.setInputImage2(plainImage(16, 16, other));
        flash.setProgress(progress);
        set(flash);
        return render(flash.outputImage()).at(5, 5);
    };
    for (const auto& [progress, shown] :
         {std::pair{0.5f, dim}, {std::nextafter(0.5f, 1.0f), other}, {1.0f, other}}) {
        double stops = 0;
        const Pixel flared = seen(0, progress, [&](Flash& flash) { stops = flash.brightness(); });
        const Pixel lit = seen(1, progress, [](Flash& flash) {
            flash.setAlpha(0.5);
            flash.setBrightness(0);
        });
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(flared[c], shown[c] * std::exp2(stops), 1.5 / 255) << progress;
            // The warp dims white light to between 0.75 and 1.
            EXPECT_GE(lit[c], 1 - (1 - shown[c]) * (1 - 0.375) - 0.01);
            EXPECT_LE(lit[c], 1 - (1 - shown[c]) * (1 - 0.5) + 0.01);
        }
    }
}

}  // namespace
}  // namespace qv::test
