// Every function of the shader libraries as a kernel: the picture that the other context draws.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <random>

#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"
#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"
#include "Tests/Native/KernelRun.h"
#include "Tests/Support/TestContext.h"

namespace qv::native::test {
namespace {

constexpr int kWidth = 91, kHeight = 58;

std::vector<std::uint32_t> unoptimised(const ShaderFunction& function) {
    std::vector<std::string> errors;
    const auto source = parseArchivedShader(function.name, function.source, errors);
    if (!source) return {};
    return compileFragmentGlsl(translateShader(*source).glsl);
}

/// Smooth, as functions that amplify slopes would show how textures are sampled; every other one of another
/// size, so that it is resampled.
Bitmap inputBitmap(int number) {
    const int width = kWidth + number % 2 * 13, height = kHeight - number % 2 * 7;
    const auto wave = [&](float phase) { return 0.5f + 0.45f * std::sin(phase + float(number)); };
    return qv::test::makeBitmap(width, height, [&](int x, int y) {
        const float u = float(x) / float(width), v = float(y) / float(height);
        return qv::test::Pixel{wave(4 * u + v), wave(5 * v - u), wave(3 * u * v + 2), 0.6f + 0.4f * v};
    });
}

/// Values as a filter may give them, the same in every run.
MTIParameters parametersFor(const ShaderFunction& function) {
    std::mt19937 random(7);
    const auto fraction = [&] { return 0.2f + 0.6f * float(random() % 1000) / 1000; };
    MTIParameters parameters;
    for (const ShaderUniform& uniform : function.uniforms) {
        if (uniform.type == UniformType::intType || uniform.type == UniformType::boolType) {
            parameters.set(uniform.name, std::int32_t(1));
        } else if (uniform.type == UniformType::floatType) {
            parameters.set(uniform.name, fraction());
        } else {
            std::vector<float> values;
            for (int i = wordCount(uniform.type); i > 0; --i) values.push_back(fraction());
            parameters.set(uniform.name, MTIVector(std::span<const float>(values)));
        }
    }
    return parameters;
}

void copyRows(const Bitmap& from, Image& to) {
    for (int y = 0; y < from.height; ++y) {
        std::memcpy(to.row<std::uint8_t>(y), from.pixels->data() + std::size_t(y) * from.width * 4,
                    std::size_t(from.width) * 4);
    }
}

/// What a pass gives on a target of this machine.
Image drawn(const PlanPass& pass, const std::vector<std::uint32_t>& code, std::vector<Image>& inputs,
            NativeTarget target) {
    Image output(TextureFormat::rgba32Float, kWidth, kHeight);
    const std::vector<TextureFormat> formats(inputs.size(), TextureFormat::rgba8);
    const auto kernel = linkedKernel({pass.function->name, code, formats, output.format()}, target);
    if (!kernel) return output;
    std::vector<NativeImage> images;
    for (Image& input : inputs) images.push_back(input.native());
    const NativeKernelArguments arguments{.words = pass.words.data(),
                                          .selectors = pass.selectors.data(),
                                          .resampled = pass.resampled,
                                          .inputs = images.data(),
                                          .target = output.native()};
    kernel->function()(&arguments, 0, kHeight);
    return output;
}

class ShaderLibraries : public testing::TestWithParam<const char*> {};

TEST_P(ShaderLibraries, DrawWhatTheOtherContextDraws) {
    const std::string path = GetParam();
    const auto library = path.empty() ? ShaderLibrary::platform() : ShaderLibrary::open(path);
    ASSERT_TRUE(library);
    std::vector<double> milliseconds;
    int compared = 0;
    for (const std::string& name : library->functionNames()) {
        const auto function = library->function(name);
        if (function->source.empty()) continue;
        SCOPED_TRACE(name);
        const auto code = unoptimised(*function);
        ASSERT_FALSE(code.empty());
        const std::vector<TextureFormat> formats(function->inputs.size(), TextureFormat::rgba8);
        {
            llvm::LLVMContext context;
            std::string error;
            const auto start = std::chrono::steady_clock::now();
            const auto module = buildKernel(context, {name, code, formats, TextureFormat::rgba8}, &error);
            const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
            milliseconds.push_back(spent.count());
            ASSERT_TRUE(module) << error;
        }
        std::vector<MTIImage> images;
        std::vector<Image> inputs;
        for (std::size_t i = 0; i < function->inputs.size(); ++i) {
            const Bitmap bitmap = inputBitmap(int(i));
            images.push_back(MTIImage::imageWithBitmap(bitmap));
            copyRows(bitmap, inputs.emplace_back(TextureFormat::rgba8, bitmap.width, bitmap.height));
        }
        const auto kernel = MTIRenderPipelineKernel::make({name, path});
        ASSERT_TRUE(kernel);
        const MTIImage image = kernel->applyToInputImages(images, parametersFor(*function), {kWidth, kHeight},
                                                          MTIPixelFormat::unspecified);
        const RenderPlan plan = planRender(image, {.processor = true});
        if (plan.passes.size() != 1 || plan.passes[0].function->name != name || plan.passes[0].clearColor)
            continue;
        std::vector<Image> results;
        for (NativeTarget target : runnableTargets()) {
            results.push_back(drawn(plan.passes[0], code, inputs, target));
            EXPECT_TRUE(results.back() == results.front()) << "targets differ";
        }
        if (results.empty()) continue;
        qv::test::Picture picture{kWidth, kHeight, {}};
        for (int y = 0; y < kHeight; ++y) {
            const auto* row = results[0].row<float>(y);
            picture.values.insert(picture.values.end(), row, row + 4 * kWidth);
        }
        const qv::test::Picture expected = qv::test::render(image);
        // The other context samples in 8 bits, which functions that raise contrasts show.
        std::size_t apart = 0;
        for (std::size_t i = 0; i < picture.values.size(); ++i) {
            const float scale = std::max(1.0f, std::abs(expected.values[i]));
            apart += !(std::abs(picture.values[i] - expected.values[i]) <= 2.0f / 255 * scale);
        }
        EXPECT_LE(apart, picture.values.size() / 100);
        EXPECT_TRUE(matches(picture, expected, 0.06));
        ++compared;
    }
    std::ranges::sort(milliseconds);
    fmt::print("{} functions built, median {:.2f} ms, most {:.2f} ms; {} compared\n", milliseconds.size(),
               milliseconds[milliseconds.size() / 2], milliseconds.back(), compared);
}

INSTANTIATE_TEST_SUITE_P(All, ShaderLibraries, testing::Values("", QV_SHADER_LIBRARY),
                         [](const auto& info) { return std::string(info.index ? "Effects" : "Platform"); });

}  // namespace
}  // namespace qv::native::test
