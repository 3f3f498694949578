// Two implementations of one picture: every class drawn by the processor's own instructions and by software
// Vulkan.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/SweepInputs.h"

namespace qv {
namespace {

// Software Vulkan rounds a bilinear sample of 8 bits to 8 bits, after weights of 8 bits; what makes much of
// such a sample, as steep ramps and looked-up places do, would be compared with its error. So it is told to
// sample in floats, as GPUs do, before any device of this program is made.
[[maybe_unused]] const int kSamplesInFloats = setenv("GALLIVM_PERF", "no_aos_sampling", 1);

/// Classes that are compared in floats: a blend into 8 bits rounds after each sprite, and after hundreds of
/// them, one upon the other, software Vulkan is 3.5 steps off their exact sum and this machine's own
/// code 2.4.
constexpr std::string_view kManySprites[] = {"QVAIStarflashFilter", "QVAIEdgeFlashFilter"};

/// Classes of which a thousandth of the values may differ, by up to five steps: they follow steeply a mask of
/// 16-bit floats, and software Vulkan cuts floats off where it stores them as such, by up to 2⁻¹¹, instead of
/// rounding them.
constexpr std::string_view kSteepOfHalves[] = {"QVAIGhostContourFilter", "QVAICurrentFilter"};

test::Picture drawn(MTIContext& context, const MTIImage& image, bool inFloats) {
    std::string error;
    test::Picture picture{int(image.size().width), int(image.size().height), {}};
    if (inFloats) {
        picture.values = context.renderToFloats(image, &error);
    } else if (const Bitmap bitmap = context.renderToBitmap(image, &error)) {
        picture = test::pictureOf(bitmap);
    }
    EXPECT_FALSE(picture.values.empty()) << error;
    return picture;
}

std::shared_ptr<MTIContext> makeContext(MTIDeviceKind kind, std::string* error = nullptr) {
    MTIContextOptions options;
    options.deviceKind = kind;
    options.fusion = MTIFusion::beforeFirstFrame;
    options.shaderCacheDirectory = QV_TEST_SHADER_CACHE;
    return MTIContext::create(options, error);
}

class NativeEqualsVulkan : public testing::TestWithParam<const QVFilterClass*> {
  protected:
    void SetUp() override {
        static const auto native = makeContext(MTIDeviceKind::native, &cause_);
        static const auto vulkan = makeContext(MTIDeviceKind::vulkan);
#ifdef QV_NATIVE
        ASSERT_THAT(cause_, testing::Not(testing::HasSubstr("not installed")));
#endif
        if (!native) GTEST_SKIP() << cause_;
        ASSERT_TRUE(vulkan);
        native_ = native.get();
        vulkan_ = vulkan.get();
    }

    static inline std::string cause_;
    const QVFilterClass& record = *GetParam();
    MTIContext *native_ = nullptr, *vulkan_ = nullptr;
};

TEST_P(NativeEqualsVulkan, WithinTwoStepsOfEightBits) {
    constexpr double kTwoSteps = 2.01 / 255;
    const bool inFloats = std::ranges::count(kManySprites, record.name) > 0;
    const auto filter = record.create();
    std::size_t values = 0, apart = 0;
    std::string worst;
    double worstDifference = 0;
    for (CGSize size : {CGSize{480, 270}, CGSize{101, 57}, CGSize{45, 80}, CGSize{2, 3}}) {
        test::setInputs(*filter, int(size.width), int(size.height));
        for (double moment : {0.27, 0.5, 0.81}) {
            test::setMoment(*filter, moment);
            test::setNumber(*filter, "effectValue", std::round(moment * 2) / 2);
            if (record.levels() > 0) test::setNumber(*filter, "level", int(moment * 10) % record.levels());
            const MTIImage image = filter->outputImage();
            if (!image) continue;
            const test::Picture a = drawn(*native_, image, inFloats), b = drawn(*vulkan_, image, inFloats);
            ASSERT_EQ(a.values.size(), b.values.size());
            values += a.values.size();
            for (std::size_t i = 0; i < a.values.size(); ++i)
                apart += std::abs(a.values[i] - b.values[i]) > kTwoSteps;
            if (const double d = test::worstDifference(a, b); d > worstDifference) {
                worstDifference = d;
                worst = testing::PrintToString(test::matches(a, b, kTwoSteps).message());
            }
        }
    }
    EXPECT_GT(values, 0u) << "nothing was compared: is an asset missing?";
    const bool isSteep = std::ranges::count(kSteepOfHalves, record.name) > 0;
    if (isSteep) {
        EXPECT_LE(worstDifference, 5.01 / 255) << worst;
    }
    // A hard edge may fall on the other side of a pixel.
    const double share = isSteep ? 1e-3 : 1e-5;
    EXPECT_LE(double(apart), std::max(share * double(values), 1.0)) << " of " << values << ": " << worst;
}

INSTANTIATE_TEST_SUITE_P(, NativeEqualsVulkan,
                         testing::ValuesIn(allFilterClasses().begin(), allFilterClasses().end()),
                         [](const auto& info) { return std::string(info.param->name); });

}  // namespace
}  // namespace qv
