// What is drawn on top of a pass: its blending, its samples, and which overlays share a pass.

#include "Platform/ImageGraph/PassOverlay.h"

#include <gmock/gmock.h>

#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/ImageGraph/PassFusion.h"
#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"
#include "Platform/ImageGraph/Vulkan/VulkanContext.h"

namespace qv {
namespace {

constexpr int kWidth = 16, kHeight = 8;

/// Upright strips of one colour each, without an edge of their own.
struct Strips final : PassOverlay {
    struct Strip {
        float left, right;  ///< pixels
        float color[4];
    };

    Strips(DrawBlend blend, int samples, std::vector<Strip> list) : strips(std::move(list)) {
        auto fragment = std::make_shared<ShaderFunction>();
        fragment->code = compileFragmentGlsl(
            "layout(location = 3) flat in vec4 factor; layout(location = 0) out vec4 color;"
            "void main() { color = factor; }");
        // Its instances are quads, seven vectors each, and their colour comes out at location 3.
        const auto vertex = ShaderLibrary::platform()->function("sprite.vert");
        made = {vertex, std::move(fragment), {DrawTopology::triangleStrip, blend, 7, samples}, 8, 0};
    }
    const OverlayKind& kind() const override { return made; }
    bool isVisible(int, int) const override { return true; }
    OverlayLayout layOut(int width, int, PictureStore&) const override {
        OverlayLayout result;
        for (const auto& [left, right, c] : strips) {
            const float center = (left + right) / float(width) - 1, half = (right - left) / float(width);
            const float instance[] = {center, 0,    half, 0, 0, 1, 1, 1, 0, 0, 1, 1, c[0], c[1],
                                      c[2],   c[3], 1,    1, 1, 1, 2, 2, 2, 2, 0, 0, 0,    0};
            result.instances.insert(result.instances.end(), std::begin(instance), std::end(instance));
        }
        result.draws = {{{}, 0, std::uint32_t(strips.size())}};
        return result;
    }

    std::vector<Strip> strips;
    OverlayKind made;
};

MTIImage copied(MTIImage image) {
    return stockKernel("MTICopy")->applyToInputImages({std::move(image)}, {}, {kWidth, kHeight},
                                                      MTIPixelFormat::unspecified);
}

const MTIColor kBelow{0.4f, 0.6f, 0.2f, 1};

void drawOn(PlanPass& pass, const PassOverlay& overlay) {
    pass.overlays = {&overlay};
    pass.samples = overlay.kind().style.samples;
}

TEST(PassOverlay, TheBrightestWinsAndSeveralSamplesSoftenTheEdge) {
    // The samples of a pixel lie at 1/8, 3/8, 5/8 and 7/8 of its width.
    const Strips strips(DrawBlend::brightest, 4,
                        {{3.75f, 10.5f, {0.8f, 0, 0.4f, 1}}, {6, 8, {0, 0.9f, 0.3f, 0.5f}}});
    const auto expected = [](int x) {
        const float share = x == 3 ? 0.25f : x == 10 ? 0.5f : x > 3 && x < 10 ? 1 : 0;
        return std::array{0.4f + 0.4f * share, x == 6 || x == 7 ? 0.9f : 0.6f, 0.2f + 0.2f * share, 1.0f};
    };
    const MTIImage image = MTIImage::initWithColor(kBelow, false, {kWidth, kHeight});
    for (bool gpuPaths : {false, true}) {
        MTIContextOptions options;
        options.validation = true;
        options.gpuPaths = gpuPaths;
        const auto context =
            std::make_shared<VulkanContext>(std::make_shared<DeviceResources>(options), options);
        for (TextureFormat format :
             {TextureFormat::rgba8, TextureFormat::rgba32Float, TextureFormat::rgba8}) {
            RenderPlan plan = planRender(image, {.output = format});
            ASSERT_EQ(plan.passes.size(), 1u);
            drawOn(plan.passes.front(), strips);
            const auto first = context->submit(plan, VulkanContext::Delivery::hostMemory);
            const auto result = context->submit(plan, VulkanContext::Delivery::hostMemory);
            EXPECT_EQ(result.statistics.madePipelines, 0);
            result.frame->wait(result.serial);
            const auto& pixels = result.outputs.front();
            for (int y = 0; y < kHeight; ++y) {
                const std::uint8_t* row = pixels.data() + std::size_t(y) * pixels.rowBytes();
                for (int i = 0; i < kWidth * 4; ++i) {
                    const float value = format == TextureFormat::rgba8
                                            ? float(row[i]) / 255
                                            : reinterpret_cast<const float*>(row)[i];
                    ASSERT_NEAR(value, expected(i / 4)[std::size_t(i % 4)], 1.01 / 255)
                        << "pixel " << i / 4 << ", channel " << i % 4;
                }
            }
        }
        EXPECT_THAT(context->validationMessages(), testing::IsEmpty());
    }
}

TEST(PassOverlay, SharesAPassWithThoseOfAsManySamples) {
    const Strips lines(DrawBlend::brightest, 4, {}), plain(DrawBlend::sourceOver, 1, {});
    const auto samplesOfPasses = [](std::vector<const PassOverlay*> overlays) {
        MTIImage image = MTIImage::initWithColor(kBelow, false, {kWidth, kHeight});
        for (std::size_t i = 0; i < overlays.size(); ++i) image = copied(image);
        RenderPlan plan = planRender(image, {});
        for (std::size_t i = 0; i < overlays.size(); ++i) drawOn(plan.passes[i + 1], *overlays[i]);
        dropCopies(plan);
        std::vector<std::pair<int, std::size_t>> result;
        for (const PlanPass& pass : plan.passes) result.emplace_back(pass.samples, pass.overlays.size());
        return result;
    };
    using testing::ElementsAre;
    using testing::Pair;
    EXPECT_THAT(samplesOfPasses({&lines, &lines}), ElementsAre(Pair(4, 2u)));
    EXPECT_THAT(samplesOfPasses({&plain, &lines}), ElementsAre(Pair(1, 1u), Pair(4, 1u)));
    EXPECT_THAT(samplesOfPasses({&lines, &plain, &plain}), ElementsAre(Pair(4, 1u), Pair(1, 2u)));
}

}  // namespace
}  // namespace qv
