// What holds for every transition from one clip to another, in every variant.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "QVFilterCore/QVTransitionMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

/// Ramps and waves; a bitmap, so that the expected pixels are known without rendering.
Bitmap clip(int width, int height, bool incoming) {
    return test::makeBitmap(width, height, [&](int x, int y) {
        const float u = (float(x) + 0.5f) / float(width), v = (float(y) + 0.5f) / float(height);
        const float wave = 0.5f + 0.5f * std::sin(u * 9 + v * 5);
        return incoming ? test::Pixel{v, 1 - u, wave, 1} : test::Pixel{u, wave, 0.2f + 0.6f * v, 1};
    });
}

/// The picture stretched to a size, bilinear between pixel centres, clamped to the edge.
test::Picture stretched(const test::Picture& picture, int width, int height) {
    test::Picture result = picture;
    result.width = width, result.height = height;
    result.values.assign(std::size_t(width) * std::size_t(height) * 4, 0);
    const auto at = [&](int x, int y, int c) {
        x = std::clamp(x, 0, picture.width - 1), y = std::clamp(y, 0, picture.height - 1);
        return picture.values[std::size_t((y * picture.width + x) * 4 + c)];
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float sx = (float(x) + 0.5f) * float(picture.width) / float(width) - 0.5f;
            const float sy = (float(y) + 0.5f) * float(picture.height) / float(height) - 0.5f;
            const int x0 = int(std::floor(sx)), y0 = int(std::floor(sy));
            const float fx = sx - float(x0), fy = sy - float(y0);
            for (int c = 0; c < 4; ++c) {
                const float top = std::lerp(at(x0, y0, c), at(x0 + 1, y0, c), fx);
                const float bottom = std::lerp(at(x0, y0 + 1, c), at(x0 + 1, y0 + 1, c), fx);
                result.values[std::size_t((y * width + x) * 4 + c)] = std::lerp(top, bottom, fy);
            }
        }
    }
    return result;
}

std::vector<const QVFilterClass*> transitions() {
    std::vector<const QVFilterClass*> classes;
    for (const QVFilterClass* record : allFilterClasses())
        if (record->isTransition()) classes.push_back(record);
    return classes;
}

class EveryTransition : public testing::TestWithParam<const QVFilterClass*> {
  protected:
    /// Calls `body` with a filter of every value of every selector, and one beyond the last.
    template <typename Body>
    void forEveryVariant(Body&& body) {
        bool any = false;
        for (const QVProperty* property : GetParam()->allProperties()) {
            for (std::size_t value = 0; value < property->variants.size(); ++value) {
                const auto filter = makeTransition();
                property->set(*filter, std::int64_t(value));
                body(*filter, std::string(property->name) + " " + std::string(property->variants[value]));
                any = true;
            }
        }
        if (!any) body(*makeTransition(), "");
    }

    static std::unique_ptr<QVTransitionMTIFilter> makeTransition() {
        return std::unique_ptr<QVTransitionMTIFilter>(
            dynamic_cast<QVTransitionMTIFilter*>(GetParam()->create().release()));
    }
};

TEST_P(EveryTransition, ShowsOneClipAloneAtEachEnd) {
    const std::pair<CGSize, CGSize> sizes[] = {
        {{96, 54}, {96, 54}}, {{54, 96}, {54, 96}}, {{64, 64}, {64, 64}}, {{96, 54}, {64, 48}}};
    forEveryVariant([&](QVTransitionMTIFilter& filter, const std::string& variant) {
        for (const auto& [first, second] : sizes) {
            const Bitmap outgoing = clip(int(first.width), int(first.height), false);
            const Bitmap incoming = clip(int(second.width), int(second.height), true);
            filter.setInputImage1(MTIImage::imageWithBitmap(outgoing));
            filter.setInputImage2(MTIImage::imageWithBitmap(incoming));
            const std::string what = variant + ", " + testing::PrintToString(first.width) + " to " +
                                     testing::PrintToString(second.width) + " wide";
            filter.setProgress(0);
            EXPECT_TRUE(
                test::matches(test::render(filter.outputImage()), test::pictureOf(outgoing), 1.01 / 255))
                << what << ", at the beginning";
            filter.setProgress(1);
            EXPECT_TRUE(test::matches(
                test::render(filter.outputImage()),
                stretched(test::pictureOf(incoming), int(first.width), int(first.height)), 1.01 / 255))
                << what << ", at the end";
        }
    });
}

TEST_P(EveryTransition, NeedsBothClips) {
    if (GetParam()->name == "QVFlashPicTransitionMTIFilter") return;  // reads the clip of the moment alone
    const MTIImage image = MTIImage::imageWithBitmap(clip(32, 18, false));
    forEveryVariant([&](QVTransitionMTIFilter& filter, const std::string& variant) {
        for (bool first : {false, true}) {
            filter.setInputImage1(first ? image : MTIImage());
            filter.setInputImage2(first ? MTIImage() : image);
            for (float progress : {0.0f, 0.2f, 0.7f, 1.0f}) {
                filter.setProgress(progress);
                EXPECT_FALSE(filter.outputImage()) << variant << " at " << progress;
            }
        }
    });
}

TEST_P(EveryTransition, IsFiniteAndWithinRangeAllTheWay) {
    forEveryVariant([&](QVTransitionMTIFilter& filter, const std::string& variant) {
        filter.setInputImage1(MTIImage::imageWithBitmap(clip(32, 18, false)));
        filter.setInputImage2(MTIImage::imageWithBitmap(clip(32, 18, true)));
        double lowest = 1, highest = 0;
        bool finite = true;
        for (int step = 0; step <= 200; ++step) {
            filter.setProgress(float(step) / 200);
            for (float value : test::render(filter.outputImage()).values) {
                finite = finite && std::isfinite(value);
                lowest = std::min(lowest, double(value));
                highest = std::max(highest, double(value));
            }
        }
        EXPECT_TRUE(finite) << variant;
        EXPECT_GE(lowest, -0.002) << variant;
        EXPECT_LE(highest, 1.002) << variant;
    });
}

INSTANTIATE_TEST_SUITE_P(, EveryTransition, testing::ValuesIn(transitions()),
                         [](const auto& info) { return std::string(info.param->name); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryTransition);

}  // namespace
}  // namespace qv
