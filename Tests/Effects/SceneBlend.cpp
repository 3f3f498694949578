// Subjects that turn into a scene: the box of the subject, the height at which the scene begins, and what
// lies on what.

#include <cstring>

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVBuildingFilter.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVDesertFilter.h"
#include "Tests/Support/SceneClip.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

/// A mask that is `value` within a box, in rows with something else behind them.
PixelBuffer boxMask(int width, int height, CGRect box, int value = 255, int outside = 10) {
    PixelBuffer mask = PixelBuffer::create(PixelFormat::gray8, width, height);
    const PixelBuffer::Plane& plane = mask.plane(0);
    std::memset(plane.data, 255, plane.rowBytes * std::size_t(height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            plane.data[std::size_t(y) * plane.rowBytes + std::size_t(x)] = std::uint8_t(
                x >= box.minX() && x < box.maxX() && y >= box.minY() && y < box.maxY() ? value : outside);
    return mask;
}

TEST(SceneBlend, FindsTheSubjectsBox) {
    const auto boxOf = QVSceneBlendFilter::getMinRectFromMask;
    for (const CGRect& box : {CGRectMake(3, 5, 20, 9), CGRectMake(0, 0, 50, 30), CGRectMake(49, 29, 1, 1),
                              CGRectMake(0, 29, 50, 1), CGRectMake(0, 0, 1, 30)})
        EXPECT_EQ(boxOf(boxMask(50, 30, box, 11)), box);
    EXPECT_EQ(boxOf(boxMask(50, 30, CGRectZero)), CGRectZero) << "10 is no subject";
    EXPECT_EQ(boxOf({}), CGRectZero);
    PixelBuffer corners = boxMask(9, 7, CGRectMake(6, 1, 1, 1));
    corners.plane(0).data[5 * corners.plane(0).rowBytes + 2] = 200;
    EXPECT_EQ(boxOf(corners), CGRectMake(2, 1, 5, 5));
    EXPECT_EQ(boxOf(boxMask(7680, 4320, CGRectMake(100, 4000, 7000, 300))), CGRectMake(100, 4000, 7000, 300));
}

TEST(SceneBlend, FadesFromTheSubjectToTheSceneOverAFifthOfItsHeight) {
    const CGAffineTransform upsideDown{1, 0, 0, -1, 0, 0}, quarterTurn{0, 1, -1, 0, 0, 0};
    const struct {
        float strength;
        CGAffineTransform transform;
        int height;
        double top, boxHeight;  ///< of the box as the frame shows it
    } cases[] = {{0, {}, 60, 10, 30}, {0.25f, {}, 60, 10, 30},        {0.5f, {}, 60, 10, 30},
                 {1, {}, 60, 10, 30}, {0.5f, upsideDown, 60, 20, 30}, {0.5f, quarterTurn, 40, 0, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.strength << ", " << c.transform.a << " " << c.transform.d);
        QVSceneBlendFilter filter;
        const PixelBuffer mask = boxMask(40, 60, CGRectMake(4, 10, 16, 30));
        filter.setMaskPixelBuffer(mask);
        EXPECT_FALSE(filter.getGradientMask()) << "without the image";
        filter.setMaskImage(plainImage(8, c.height, {1, 1, 1, 1}));
        filter.setExtraTransform(c.transform);
        filter.setEffectValue(c.strength);
        double top = c.top, height = c.boxHeight;
        // A quarter turn with y up: what is at the right comes to the top. The box is columns 4 to 20 of 40.
        if (c.transform == quarterTurn) top = 40 - 20, height = 16;
        const Picture column = render(filter.getGradientMask());
        ASSERT_EQ(column.height, c.height);
        for (int y = 0; y < c.height; ++y) {
            const double at = (y + 0.5 - top) / height, begins = 1 - double(c.strength);
            const double white = std::clamp(
                (std::min(begins + 0.2, 1.0) - at) / std::max(std::min(begins + 0.2, 1.0) - begins, 1e-9),
                0.0, 1.0);
            EXPECT_NEAR(column.at(0, y)[0], white, 0.6 / 255) << y;
        }
    }
}

class SceneBlendOutput : public testing::Test {
  protected:
    SceneBlendOutput() {
        writeGreyClip(folder_ / "grey.mp4", 4, {1, 15}, [](int) { return 180; });
        filter_.setSceneAssetPath(folder_ / "grey.mp4");
        filter_.setInputImage(plainImage(40, 60, {0.8f, 0.4f, 0.2f, 1}));
        filter_.setMaskImage(MTIImage::imageWithPixelBuffer(boxMask(40, 60, kBox, 255, 0)));
        filter_.setMaskPixelBuffer(boxMask(40, 60, kBox, 255, 0));
        filter_.setBackgroundImage(plainImage(3, 3, kBackground));
        filter_.setEffectValue(0.5f);
    }
    void expectPicture(const Pixel& upper, const Pixel& lower, const Pixel& around) {
        const Picture picture = render(filter_.outputImage());
        EXPECT_LT(difference(picture.at(20, 12), upper), 0.012);
        EXPECT_LT(difference(picture.at(20, 48), lower), 0.012);
        EXPECT_LT(difference(picture.at(2, 52), around), 0.012);
    }

    static constexpr CGRect kBox{{10, 10}, {20, 40}};
    static constexpr Pixel kInput{0.8f, 0.4f, 0.2f, 1}, kBackground{0.1f, 0.2f, 0.3f, 1};
    // BT.709 luma of the input, and of the clip: (180 - 16) / 219.
    static constexpr Pixel kGrey{0.4706f, 0.4706f, 0.4706f, 1}, kScene{0.7489f, 0.7489f, 0.7489f, 1};
    TemporaryFileFolder folder_;
    QVSceneBlendFilter filter_;
};

TEST_F(SceneBlendOutput, LaysTheSceneAndTheBackgroundWhereTheMaskSays) {
    expectPicture(kGrey, kScene, kBackground);
    filter_.setBackgroundImage({});
    expectPicture(kGrey, kScene, kScene);
}

TEST_F(SceneBlendOutput, LeavesOutWhatItLacks) {
    filter_.setMaskPixelBuffer({});
    expectPicture(kInput, kInput, kBackground);
    filter_.setMaskPixelBuffer(boxMask(1, 1, CGRectMake(0, 0, 1, 1)));
    filter_.setSceneAssetPath(folder_ / "none.mp4");
    expectPicture(kInput, kInput, kBackground);
    filter_.setSceneAssetPath(folder_ / "grey.mp4");
    filter_.setMaskImage({});
    EXPECT_EQ(filter_.outputImage(), filter_.inputImage());
    filter_.setInputImage({});
    EXPECT_FALSE(filter_.outputImage());
}

TEST(SceneBlend, BackgroundsFollowTheFrameWhenItChangesByTwoPixels) {
    QVDesertFilter desert;
    const auto backgroundAt = [&](int width, int height) {
        desert.setInputImage(plainImage(width, height, {0, 0, 0, 1}));
        return desert.backgroundImage();
    };
    const MTIImage first = backgroundAt(30, 101);
    const Picture picture = render(first);
    ASSERT_EQ(picture.height, 101);
    for (int y : {0, 50, 100}) {
        const float t = (float(y) + 0.5f) / 101;
        const Pixel wanted{(255 - 59 * t) / 255, (233 - 93 * t) / 255, (220 - 111 * t) / 255, 1};
        EXPECT_LT(difference(picture.at(7, y), wanted), 1.01 / 255) << y;
    }
    EXPECT_EQ(backgroundAt(31, 100), first);
    EXPECT_NE(backgroundAt(33, 100), first);
    const MTIImage wide = desert.backgroundImage();
    EXPECT_NE(backgroundAt(33, 102), wide);

    QVBuildingFilter building;
    EXPECT_LT(
        difference(render(building.backgroundImage()).at(0, 0), {25 / 255.0f, 47 / 255.0f, 58 / 255.0f, 1}),
        1e-3);
}

}  // namespace
}  // namespace qv::test
