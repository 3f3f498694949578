// Passes drawn by the native context's own code: against formulas, and the same bytes on every instruction
// set and however the rows are divided.

#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/ImageGraph/PassFusion.h"
#include "Tests/Native/NativePicture.h"
#include "Tests/Support/GaussianReference.h"

namespace qv {
namespace {

using test::NativePicture;

/// What the one pass of the image gives, drawn in bands of so many rows, the last one first.
std::vector<std::uint8_t> drawn(const MTIImage& image, NativeTarget instructions, int bandRows,
                                TextureFormat output = TextureFormat::rgba8) {
    RenderPlan plan = planRender(image, {.native = true, .output = output});
    plan = fusedPlan(plan, fusePlan(plan), std::vector<std::optional<PlanPass>>(plan.passes.size()));
    EXPECT_EQ(plan.passes.size(), 1u);
    const PlanPass& pass = plan.passes.front();
    const auto operation = nativeOperationFor(plan, pass, instructions);
    if (!operation) {
        ADD_FAILURE() << pass.function->name << " is no operation";
        return {};
    }
    const PlanTexture& source = plan.textures[std::size_t(pass.inputs.front())];
    const NativePicture input(std::get<BitmapSource>(source.source->operation).bitmap);
    const PlanTexture& target = plan.textures[std::size_t(pass.output)];
    const NativePicture result(target.width, target.height, texelBytes(target.format));
    std::vector<std::byte> memory(operation->scratchBytes() + kOperationAlignment, std::byte{0x55});
    void* scratch = memory.data();
    std::size_t space = memory.size();
    std::align(kOperationAlignment, operation->scratchBytes(), scratch, space);
    for (int stage = 0; stage < operation->stageCount(); ++stage) {
        const int rows = operation->rows(stage);
        for (int first = (rows - 1) / bandRows * bandRows; first >= 0; first -= bandRows)
            operation->draw(stage, &input.image(), result.image(), static_cast<std::byte*>(scratch), first,
                            std::min(first + bandRows, rows));
    }
    return result.texels();
}

/// The same from every instruction set, in bands of all sizes.
std::vector<std::uint8_t> drawnEverywhere(const MTIImage& image,
                                          TextureFormat output = TextureFormat::rgba8) {
    const auto first = drawn(image, NativeTarget::neon, kMaximumImageSide, output);
    for (NativeTarget instructions : test::instructionSets()) {
        for (int bandRows : {1, 7, kMaximumImageSide})
            EXPECT_EQ(drawn(image, instructions, bandRows, output), first)
                << int(instructions) << " " << bandRows;
    }
    return first;
}

MTIImage stock(const char* name, const Bitmap& bitmap, const MTIParameters& parameters, CGSize size) {
    return stockKernel(name)->applyToInputImages({MTIImage::imageWithBitmap(bitmap)}, parameters, size,
                                                 MTIPixelFormat::unspecified);
}

MTIImage blur(const Bitmap& bitmap, float radius) {
    MTIGaussianBlurFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    filter.setRadius(radius);
    return filter.outputImage();
}

test::Difference blurDifference(const Bitmap& bitmap, float radius) {
    const Bitmap result{
        bitmap.width, bitmap.height,
        std::make_shared<const std::vector<std::uint8_t>>(drawnEverywhere(blur(bitmap, radius)))};
    return test::difference(result, test::blurred(bitmap, radius));
}

TEST(NativeOperations, BlurAgreesWithConvolution) {
    for (const auto& [name, bitmap] :
         {std::pair{"noise", test::noise(181, 123)}, std::pair{"edges", test::edges(242, 147)}}) {
        for (float radius :
             {0.3f, 0.8f, 1.5f, 2.4f, 2.5f, 4.0f, 7.9f, 8.0f, 13.0f, 20.0f, 27.0f, 28.0f, 60.0f, 150.0f}) {
            const test::Difference d = blurDifference(bitmap, radius);
            EXPECT_GE(d.psnr, 54) << name << " " << radius;
            EXPECT_LT(d.worst, 3) << name << " " << radius;
        }
    }
    for (auto [width, height] : {std::pair{1, 1}, {1, 40}, {40, 1}, {2, 3}, {7, 5}, {64, 37}}) {
        for (float radius : {0.7f, 3.0f, 9.0f, 300.0f})
            EXPECT_LT(blurDifference(test::edges(width, height), radius).worst, 3)
                << width << " x " << height << " radius " << radius;
    }
}

TEST(NativeOperations, ABlurIsJoinedWithNoOtherPass) {
    MTIGaussianBlurFilter filter;
    filter.setInputImage(MTIImage::initWithColor({1, 0.5f, 0, 1}, false, {32, 32}));
    filter.setRadius(4);
    const MTIImage image =
        stockKernel("MTIOpaque")
            ->applyToInputImages({filter.outputImage()}, {}, {32, 32}, MTIPixelFormat::unspecified);
    const RenderPlan plan = planRender(image, {.native = true});
    const PassFusion fusion = fusePlan(plan);
    ASSERT_EQ(fusion.passes.size(), 3u);
    for (const FusedPass& pass : fusion.passes) EXPECT_EQ(pass.members.size(), 1u);
    EXPECT_TRUE(fusion.passes[1].shape.values.empty());
    EXPECT_EQ(planRender(image, {.native = true, .working = TextureFormat::rgba16Float}).passes.size(), 6u);
}

TEST(NativeOperations, AFlatPictureStaysAsItIs) {
    for (int value : {0, 1, 127, 254, 255}) {
        const float v = float(value) / 255;
        const Bitmap flat = test::makeBitmap(45, 31, [&](int, int) { return test::Pixel{v, v, v, v}; });
        for (float radius : {1.0f, 4.0f, 30.0f, 200.0f})
            EXPECT_EQ(drawnEverywhere(blur(flat, radius)), *flat.pixels) << value << " " << radius;
        EXPECT_EQ(drawnEverywhere(stock("MTIResize", flat, {}, {45, 31})), *flat.pixels);
    }
}

TEST(NativeOperations, AreTheirFormulasOnPixels) {
    const Bitmap bitmap = NativePicture(67, 20).bitmap();
    const CGSize size{67, 20}, part{50, 31};
    const auto in = [&](int x, int y, int c) {
        return x < 0 || y < 0 || x >= 67 || y >= 20 ? 0 : int(bitmap.row(y)[x * 4 + c]);
    };
    const auto check = [](const std::vector<std::uint8_t>& result, CGSize of, int channels, auto expected) {
        ASSERT_EQ(result.size(), std::size_t(of.width * of.height * channels));
        for (std::size_t i = 0; i < result.size(); ++i) {
            const int c = int(i) % channels, x = int(i) / channels % int(of.width),
                      y = int(i) / channels / int(of.width);
            ASSERT_EQ(int(result[i]), expected(x, y, c)) << x << " " << y << " " << c;
        }
    };
    check(drawnEverywhere(stock("MTICopy", bitmap, {}, size)), size, 4, in);
    check(drawnEverywhere(stock("MTIOpaque", bitmap, {}, size)), size, 4,
          [&](int x, int y, int c) { return c == 3 ? 255 : in(x, y, c); });
    check(drawnEverywhere(stock("MTIPremultiply", bitmap, {}, size)), size, 4, [&](int x, int y, int c) {
        return c == 3 ? in(x, y, 3) : int(std::lround(in(x, y, c) * in(x, y, 3) / 255.0));
    });
    check(drawnEverywhere(stock("MTIAlphaToPlane", bitmap, {}, size), TextureFormat::r8), size, 1,
          [&](int x, int y, int) { return in(x, y, 3); });
    for (auto [x0, y0] : {std::pair{0, 0}, {-9, -8}, {30, 5}, {200, 0}, {0, -500}, {-60, 19}}) {
        check(drawnEverywhere(
                  stock("MTICropPixels", bitmap, {{"origin", MTIVector{float(x0), float(y0)}}}, part)),
              part, 4, [&](int x, int y, int c) { return in(x + x0, y + y0, c); });
    }
}

/// Bilinear at a place in pixels; the border goes on.
double sampled(const Bitmap& bitmap, double x, double y, int c) {
    const auto pixel = [&](double px, double py) {
        const int column = std::clamp(int(px), 0, bitmap.width - 1);
        return double(bitmap.row(std::clamp(int(py), 0, bitmap.height - 1))[column * 4 + c]);
    };
    const double left = std::floor(x), top = std::floor(y), u = x - left, v = y - top;
    return (pixel(left, top) * (1 - u) + pixel(left + 1, top) * u) * (1 - v) +
           (pixel(left, top + 1) * (1 - u) + pixel(left + 1, top + 1) * u) * v;
}

TEST(NativeOperations, ResizeIsBilinear) {
    const Bitmap bitmap = test::noise(61, 43);
    for (auto [width, height] : {std::pair{122, 86}, {60, 40}, {33, 25}, {200, 43}, {1, 1}, {61, 90}}) {
        const auto result = drawnEverywhere(stock("MTIResize", bitmap, {}, {double(width), double(height)}));
        ASSERT_EQ(result.size(), std::size_t(width * height * 4));
        for (int i = 0; i < width * height * 4; ++i) {
            const int x = i / 4 % width, y = i / 4 / width;
            ASSERT_NEAR(result[std::size_t(i)],
                        sampled(bitmap, (x + 0.5) * 61 / width - 0.5, (y + 0.5) * 43 / height - 0.5, i % 4),
                        0.6)
                << width << " x " << height << ": " << x << " " << y;
        }
    }
}

TEST(NativeOperations, LinesAreGatheredWithRisingAndFallingWeights) {
    const Bitmap bitmap = test::noise(67, 41);
    const auto taken = [&](double x, double y, int c, bool lightsOnly) {
        double luma = 0;
        for (int i = 0; i < 3; ++i) luma += std::array{0.2126, 0.7152, 0.0722}[i] * sampled(bitmap, x, y, i);
        const double part = c == 3 || !lightsOnly ? 1 : std::min(1.2 * luma * luma / (255 * 255), 1.0);
        return part * sampled(bitmap, x, y, c);
    };
    struct Lines {
        bool isOnGrid, isTurned;
        float x, y;  // of a step
    };
    for (const Lines& lines : {Lines{true, false, 1, 0},
                               {true, false, 1, -1},
                               {true, true, 0, 1},
                               {true, true, 1, 1},
                               {true, true, -1, 1},
                               {false, false, 1, 0.37f},
                               {false, false, -0.81f, 1}}) {
        for (const auto& [reduction, lightsOnly] :
             {std::pair{2, false}, {6, true}, {16, false}, {16, true}}) {
            const float r = float(reduction), across = lines.x == 1 && !lines.isTurned ? 0 : 1;
            // Off the grid across the line alone.
            const float originX = lines.isOnGrid || across == 0 ? -9 : -9.75f;
            const float originY = lines.isOnGrid || across == 1 ? -7 : -7.25f;
            const CGSize size{37, 29};
            const auto result = drawnEverywhere(stock("MTILineGather", bitmap,
                                                      {{"reduction", reduction},
                                                       {"lightsOnly", int(lightsOnly)},
                                                       {"isOnGrid", int(lines.isOnGrid)},
                                                       {"isTurned", int(lines.isTurned)},
                                                       {"tapStep", MTIVector{lines.x, lines.y}},
                                                       {"origin", MTIVector{originX, originY}},
                                                       {"columnStep", MTIVector{r * lines.x, r * lines.y}},
                                                       {"rowStep", MTIVector{across, 1 - across}}},
                                                      size));
            ASSERT_EQ(result.size(), std::size_t(37 * 29 * 4));
            for (int i = 0; i < 37 * 29 * 4; ++i) {
                const int x = i / 4 % 37, y = i / 4 / 37;
                const int along = lines.isTurned ? y : x, line = lines.isTurned ? x : y;
                double sum = 0;
                for (int k = 0; k < 2 * reduction; ++k) {
                    const double step = along * reduction + k;
                    sum += (2 * std::min(k, 2 * reduction - 1 - k) + 1) *
                           taken(originX + double(step * lines.x + line * across),
                                 originY + double(step * lines.y + line * (1 - across)), i % 4, lightsOnly);
                }
                ASSERT_NEAR(result[std::size_t(i)], sum / (2 * reduction * reduction), 0.501)
                    << lines.x << " " << lines.y << " by " << reduction << ": " << x << " " << y;
            }
        }
    }
}

TEST(NativeOperations, ABoxWeighsItsEndsByWhatTheLineCovers) {
    const Bitmap bitmap = test::noise(53, 31);
    for (auto [stepX, stepY] : {std::pair{1, 0}, {0, 1}, {1, 1}, {1, -1}, {0, 0}}) {
        for (const float steps : {0.5f, 1.0f, 1.3f, 4.0f, 14.34f, 18.0f}) {
            const auto result = drawnEverywhere(
                stock("MTILineBox", bitmap,
                      {{"tapStep", MTIVector{float(stepX), float(stepY)}}, {"steps", steps}}, {53, 31}));
            ASSERT_EQ(result.size(), std::size_t(53 * 31 * 4));
            for (int i = 0; i < 53 * 31 * 4; ++i) {
                const int x = i / 4 % 53, y = i / 4 / 53;
                double sum = 0;
                for (int k = -9; k <= 9; ++k) {
                    const double covered = std::clamp(0.5 * double(steps) + 0.5 - std::abs(k), 0.0, 1.0);
                    const double weight = k == 0 ? std::min(double(steps), 1.0) : covered;
                    sum += weight * sampled(bitmap, x + k * stepX, y + k * stepY, i % 4);
                }
                ASSERT_NEAR(result[std::size_t(i)], sum / double(steps), 0.501)
                    << stepX << " " << stepY << " of " << steps << ": " << x << " " << y;
            }
        }
    }
}

}  // namespace
}  // namespace qv
