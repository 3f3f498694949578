// Rendering on a device of the host's, from and into its images.

#include <gmock/gmock.h>
#include <vulkan/vulkan.h>

#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "Tests/ImageGraph/VulkanHost.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using test::messages;

constexpr int kWidth = 24, kHeight = 10;

std::vector<std::uint8_t> ramps() {
    std::vector<std::uint8_t> bytes;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            for (int value : {x * 10, y * 20, 255 - x * 5, 255}) bytes.push_back(std::uint8_t(value));
        }
    }
    return bytes;
}

class HostDevice : public testing::Test {
  protected:
    void SetUp() override {
        messages().clear();
        MTIContextOptions options;
        std::string error;
        context = MTIContext::create(host.shared(), options, &error);
        ASSERT_NE(context, nullptr) << error;
    }
    void TearDown() override {
        context.reset();
        owner.reset();  // the layer complains about everything that is left on a device that goes
        EXPECT_THAT(messages(), testing::IsEmpty());
    }

    std::unique_ptr<test::VulkanHost> owner = std::make_unique<test::VulkanHost>();
    test::VulkanHost& host = *owner;
    std::shared_ptr<MTIContext> context;
};

TEST_F(HostDevice, RendersFromOneImageIntoAnotherBetweenTheHostsOwnWork) {
    const std::vector<std::uint8_t> bytes = ramps();
    for (VkImageLayout layout : {VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL, VK_IMAGE_LAYOUT_GENERAL}) {
        for (VkFormat format : {VK_FORMAT_R8G8B8A8_UNORM, VK_FORMAT_B8G8R8A8_UNORM}) {
            const auto source = host.makeImage(kWidth, kHeight, VK_FORMAT_R8G8B8A8_UNORM, layout);
            const auto result = host.makeImage(kWidth, kHeight, format, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL);
            const VkSemaphore uploaded = host.makeSemaphore(), rendered = host.makeSemaphore();
            host.upload(source, bytes, uploaded);

            MTIExposureFilter exposure;
            exposure.setInputImage(MTIImage::imageWithVulkanImage(source));
            exposure.setExposure(-1);
            context->prepare(exposure.outputImage(), result);
            std::string error;
            const auto task = context->startRender(exposure.outputImage(), result,
                                                   {{{uploaded, 0}}, {{rendered, 0}}}, &error);
            ASSERT_NE(task, nullptr) << error;
            const auto darker = host.download(result, bytes.size(), rendered);
            EXPECT_EQ(task->statistics().passes, 1);
            EXPECT_EQ(task->statistics().madePipelines, 0);
            int worst = 0;
            for (std::size_t i = 0; i < bytes.size(); ++i) {
                const bool swapped = format == VK_FORMAT_B8G8R8A8_UNORM && i % 4 != 3;
                const std::size_t from = swapped ? i / 4 * 4 + 2 - i % 4 : i;
                const double expected = i % 4 == 3 ? bytes[from] : bytes[from] * 0.5;
                worst = std::max(worst, int(std::ceil(std::abs(darker[i] - expected))));
            }
            EXPECT_LE(worst, 1);
            EXPECT_TRUE(task->wait());
        }
    }
}

TEST_F(HostDevice, LeavesNothingOnTheDeviceWhenAContextEndsBeforeItsImages) {
    const MTIImage bitmap = MTIImage::imageWithBitmap(test::makeBitmap(8, 8, [](int x, int y) {
        return test::Pixel{float(x) / 7, float(y) / 7, 0, 1};
    }));
    const auto image =
        host.makeImage(8, 8, VK_FORMAT_R8G8B8A8_UNORM, VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL);
    host.upload(image, std::vector<std::uint8_t>(8 * 8 * 4, 77), VK_NULL_HANDLE);
    const MTIImage hosts = MTIImage::imageWithVulkanImage(image);
    const Bitmap first = context->renderToBitmap(bitmap);
    EXPECT_TRUE(context->renderToBitmap(hosts));
    context.reset();  // while both images live on
    context = MTIContext::create(host.shared(), {});
    EXPECT_EQ(*context->renderToBitmap(bitmap).pixels, *first.pixels);
    TearDown();
}

TEST_F(HostDevice, RefusesWhatItCannotDoWithACause) {
    const auto image = host.makeImage(8, 8, VK_FORMAT_R8G8B8A8_UNORM, VK_IMAGE_LAYOUT_GENERAL);
    auto strange = image;
    strange.layout = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
    EXPECT_FALSE(MTIImage::imageWithVulkanImage(strange));
    strange = image;
    strange.format = VK_FORMAT_D32_SFLOAT;
    EXPECT_FALSE(MTIImage::imageWithVulkanImage(strange));

    std::string error;
    const MTIImage color = MTIImage::initWithColor({1, 0, 0, 1}, false, {8, 8});
    EXPECT_EQ(context->startRender(color, strange, {}, &error), nullptr);
    EXPECT_THAT(error, testing::HasSubstr("format"));
    EXPECT_EQ(context->startRender(color.resize({9, 8}), image, {}, &error), nullptr);
    EXPECT_THAT(error, testing::HasSubstr("size"));
    // Another device cannot read the host's image.
    EXPECT_FALSE(test::context()->renderToBitmap(MTIImage::imageWithVulkanImage(image), &error));
    EXPECT_THAT(error, testing::HasSubstr("host"));
    EXPECT_EQ(MTIContext::create(MTIVulkanDevice{}, {}, &error), nullptr);
    EXPECT_THAT(error, testing::HasSubstr("not complete"));
    auto noQueue = host.shared();
    noQueue.queueFamily = 99;
    EXPECT_EQ(MTIContext::create(noQueue, {}, &error), nullptr);
    EXPECT_THAT(error, testing::HasSubstr("does not draw"));
}

}  // namespace
}  // namespace qv
