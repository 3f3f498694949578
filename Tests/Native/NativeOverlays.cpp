// Sprites and lines drawn by the native context's own code: against what a Vulkan device draws of the same
// graph, and the same bytes on every instruction set and however the rows are divided.

#include "Platform/ImageGraph/Native/Overlays/NativeOverlays.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "Platform/ImageGraph/ImageNode.h"
#include "Tests/Native/NativePicture.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using test::NativePicture;

constexpr int kWidth = 331, kHeight = 187;

Bitmap background() {
    return test::makeBitmap(kWidth, kHeight, [](int x, int y) {
        return test::Pixel{float(x) / kWidth, float(y) / kHeight, 0.5f,
                           (x / 40 + y / 30) % 3 == 0 ? 0.3f : 1.0f};
    });
}

template <typename Overlay>
MTIImage drawnOver(const MTIImage& input, Overlay overlay) {
    auto node = std::make_shared<ImageNode>();
    node->operation = std::move(overlay);
    node->inputs = {input};
    node->width = kWidth;
    node->height = kHeight;
    return MTIImage(std::move(node));
}

/// The image's overlays over the background, in bands of so many rows.
void drawOver(const NativePicture& target, TextureFormat format, const MTIImage& image,
              NativeTarget instructions, int bandRows, NativePictures& pictures) {
    const RenderPlan plan = planRender(image, {.native = true, .working = format, .output = format});
    PlanPass pass = plan.passes.front();
    for (std::size_t i = 1; i < plan.passes.size(); ++i) {
        pass.overlays.push_back(plan.passes[i].overlays.front());
        EXPECT_EQ(plan.passes[i].samples, pass.samples);
    }
    std::string error;
    const auto overlays =
        layOutNativeOverlays(pass, plan.textures[std::size_t(pass.output)], pictures, instructions, &error);
    ASSERT_TRUE(overlays) << error;
    for (int first = (kHeight - 1) / bandRows * bandRows; first >= 0; first -= bandRows)
        overlays->draw(target.image(), first, std::min(first + bandRows, kHeight));
}

/// In 8 bits.
std::vector<std::uint8_t> drawn(const MTIImage& image, NativeTarget instructions, int bandRows,
                                NativePictures& pictures) {
    const NativePicture target(background());
    drawOver(target, TextureFormat::rgba8, image, instructions, bandRows, pictures);
    return target.texels();
}

/// In floats of a kind; the largest difference from `expected`, of 255.
template <typename Channel>
float differsInFloat(TextureFormat format, const MTIImage& image, NativePictures& pictures,
                     const std::vector<std::uint8_t>& expected) {
    const Bitmap below = background();
    std::vector<std::vector<std::uint8_t>> results;
    for (NativeTarget instructions : test::instructionSets()) {
        const NativePicture target(kWidth, kHeight, 4 * sizeof(Channel));
        for (int i = 0; i < kWidth * kHeight * 4; ++i) {
            auto* row = reinterpret_cast<Channel*>(target.image().pixels +
                                                   i / (4 * kWidth) * target.image().rowBytes);
            row[i % (4 * kWidth)] = Channel(float((*below.pixels)[std::size_t(i)]) / 255);
        }
        drawOver(target, format, image, instructions, 50, pictures);
        results.push_back(target.texels());
        EXPECT_EQ(results.back(), results.front());
    }
    float worst = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        Channel value;
        std::memcpy(&value, &results.front()[i * sizeof value], sizeof value);
        worst = std::max(worst, std::abs(float(value) * 255 - float(expected[i])));
    }
    return worst;
}

/// Draws it in every way, and beside Vulkan: values off by more than 2, of a million.
double differsFromVulkan(const MTIImage& image) {
    NativePictures pictures;
    const auto native = drawn(image, NativeTarget::neon, kHeight, pictures);
    for (NativeTarget instructions : test::instructionSets()) {
        for (int bandRows : {1, 23, kHeight})
            EXPECT_EQ(drawn(image, instructions, bandRows, pictures), native)
                << int(instructions) << " " << bandRows;
    }
    EXPECT_LT(differsInFloat<float>(TextureFormat::rgba32Float, image, pictures, native), 3);
    EXPECT_LT(differsInFloat<_Float16>(TextureFormat::rgba16Float, image, pictures, native), 3);
    std::string error;
    const Bitmap vulkan = test::context()->renderToBitmap(image, &error);
    EXPECT_TRUE(vulkan) << error;
    if (!vulkan) return 1e6;
    std::size_t off = 0;
    int changed = 0;
    const Bitmap before = background();
    for (std::size_t i = 0; i < native.size(); ++i) {
        const int d = std::abs(int(native[i]) - int((*vulkan.pixels)[i]));
        off += d > 2;
        changed += (*vulkan.pixels)[i] != (*before.pixels)[i];
    }
    EXPECT_GT(changed, 1000);
    return double(off) * 1e6 / double(native.size());
}

std::shared_ptr<const SpriteTexture> picture(int width, int height) {
    const Bitmap bitmap = test::makeBitmap(width, height, [&](int x, int y) {
        const double dx = (x + 0.5) / width * 2 - 1, dy = (y + 0.5) / height * 2 - 1;
        const float alpha = float(std::clamp(1.3 - std::hypot(dx, dy), 0.0, 1.0));
        return test::Pixel{float((x / 5) % 2), float(y) / float(height), 0.7f, alpha};
    });
    return std::make_shared<SpriteTexture>(SpriteTexture{bitmap, ""});
}

TEST(NativeOverlays, SpritesAreThoseOfAGraphicsDevice) {
    std::mt19937 generator(3);
    const auto chance = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(generator);
    };
    const std::shared_ptr<const SpriteTexture> pictures[] = {picture(64, 64), picture(200, 37),
                                                             picture(9, 120), picture(1, 1)};
    for (int count : {5, 40, 300}) {
        SpritePass pass;
        for (int i = 0; i < count; ++i) {
            const double size = std::exp(chance(-5, 0.3)), angle = i % 3 == 0 ? 0 : chance(-3.2, 3.2);
            CGAffineTransform t = CGAffineTransformMakeScale(size, size * chance(0.4, 1.5));
            t = CGAffineTransformConcat(t, CGAffineTransformMakeRotation(angle));
            t = CGAffineTransformConcat(
                t, CGAffineTransformMakeTranslation(chance(-1.1, 1.1), chance(-0.7, 0.7)));
            pass.sprites.push_back({t,
                                    float(chance(0.2, 1)),
                                    {float(chance(0, 1)), float(chance(0, 1)), float(chance(0, 1)), 1},
                                    pictures[std::size_t(i) % 4]});
        }
        EXPECT_LE(differsFromVulkan(drawnOver(MTIImage::imageWithBitmap(background()), pass)), 50) << count;
    }
}

TEST(NativeOverlays, LinesAreThoseOfAGraphicsDevice) {
    std::mt19937 generator(4);
    const auto chance = [&](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(generator);
    };
    for (int samples : {1, 2}) {
        for (float thickness : {0.4f, 2.0f, 9.0f, 40.0f}) {
            MTIImage image = MTIImage::imageWithBitmap(background());
            for (int line = 0; line < 2; ++line) {
                std::vector<LineSegment> curves;
                for (int i = 0; i < 12; ++i) {
                    LineSegment s{{chance(-20, 140), chance(-20, 100)},
                                  {chance(0, 120), chance(0, 80)},
                                  {chance(0, 120), chance(0, 80)}};
                    if (i % 4 != 0) std::ranges::copy(curves.back().end, s.start);
                    curves.push_back(s);
                }
                image = drawnOver(image, LinePass(curves, thickness, {120, 80}, 100, samples));
            }
            EXPECT_LE(differsFromVulkan(image), 50) << samples << " samples, " << thickness;
        }
    }
}

TEST(NativeOverlays, FailWithOneLineForStagesOfOthers) {
    struct Unknown final : PassOverlay {
        OverlayKind made;
        const OverlayKind& kind() const override { return made; }
        bool isVisible(int, int) const override { return true; }
        OverlayLayout layOut(int, int, PictureStore&) const override { return {}; }
    } unknown;
    const auto& library = ShaderLibrary::platform();
    PlanPass pass;
    pass.overlays = {&unknown};
    NativePictures pictures;
    const auto errorOf = [&] {
        std::string error;
        EXPECT_EQ(layOutNativeOverlays(pass, {8, 8}, pictures, NativeTarget::neon, &error), nullptr);
        return error;
    };
    EXPECT_EQ(errorOf(), "a stock shader is missing");
    unknown.made.vertexStage = library->function("sprite.vert");
    unknown.made.fragmentStage = library->function("bezier_fragment.frag");
    EXPECT_EQ(errorOf(), "this device cannot draw with the stage sprite.vert");
}

}  // namespace
}  // namespace qv
