// Standard functions where formulas do not reach: at 0, at the ends, at what is infinite or no number;
// packing.

#include <glslang/SPIRV/GLSL.std.450.h>
#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <limits>

#include "Tests/Native/LaneKernel.h"

namespace qv::native::test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

struct Case {
    unsigned function;
    std::vector<float> operands;
    float expected;
};

const std::vector<Case>& cases() {
    static const std::vector<Case> list{
        {GLSLstd450Pow, {0, 2}, 0},
        {GLSLstd450Pow, {0.3f, 1}, 0.3f},
        {GLSLstd450Pow, {7, 0}, 1},
        {GLSLstd450Pow, {1, 100}, 1},
        {GLSLstd450Pow, {2, -3}, 0.125f},
        {GLSLstd450Pow, {0.5f, 500}, 0},
        {GLSLstd450Pow, {-1, 2}, kNaN},
        {GLSLstd450Exp2, {5}, 32},
        {GLSLstd450Exp2, {-200}, 0},
        {GLSLstd450Exp2, {200}, kInfinity},
        {GLSLstd450Exp2, {kNaN}, kNaN},
        {GLSLstd450Exp, {0}, 1},
        {GLSLstd450Exp, {-kInfinity}, 0},
        {GLSLstd450Exp, {kInfinity}, kInfinity},
        {GLSLstd450Log, {1}, 0},
        {GLSLstd450Log, {0}, -kInfinity},
        {GLSLstd450Log, {-1}, kNaN},
        {GLSLstd450Log2, {1024}, 10},
        {GLSLstd450Log2, {kInfinity}, kInfinity},
        {GLSLstd450Sin, {0}, 0},
        {GLSLstd450Sin, {kInfinity}, kNaN},
        {GLSLstd450Cos, {0}, 1},
        {GLSLstd450Atan2, {0, 0}, 0},
        {GLSLstd450Atan2, {0, -1}, float(M_PI)},
        {GLSLstd450Atan2, {1, 0}, float(M_PI / 2)},
        {GLSLstd450Acos, {1}, 0},
        {GLSLstd450Asin, {1}, float(M_PI / 2)},
        {GLSLstd450Asin, {2}, kNaN},
        {GLSLstd450Sqrt, {-1}, kNaN},
        {GLSLstd450InverseSqrt, {0}, kInfinity},
        {GLSLstd450FMin, {kNaN, 2}, 2},
        {GLSLstd450FMin, {2, kNaN}, 2},
        {GLSLstd450FMax, {kNaN, 2}, 2},
        {GLSLstd450FMax, {2, kNaN}, 2},
        {GLSLstd450FClamp, {kNaN, 0, 1}, 0},
        {GLSLstd450FClamp, {kInfinity, 0, 1}, 1},
        {GLSLstd450FMix, {0.1f, 0.7f, 0}, 0.1f},
        {GLSLstd450FMix, {0.1f, 0.7f, 1}, 0.7f},
        {GLSLstd450Step, {0.5f, 0.5f}, 1},
        {GLSLstd450Step, {0.5f, 0.25f}, 0},
        {GLSLstd450SmoothStep, {0.2f, 0.7f, 0.7f}, 1},
        {GLSLstd450SmoothStep, {0.2f, 0.7f, 0.2f}, 0},
        {GLSLstd450SmoothStep, {0, 1, 0.25f}, 0.15625f},
        {GLSLstd450Round, {2.5f}, 2},
        {GLSLstd450Fract, {-0.25f}, 0.75f},
        {GLSLstd450FSign, {-3}, -1},
        {GLSLstd450FSign, {0}, 0},
        {GLSLstd450Trunc, {-1.75f}, -1},
        {GLSLstd450Tanh, {50}, 1},
        {GLSLstd450Fma, {2, 3, 4}, 10},
    };
    return list;
}

TEST(LaneFunctions, AtTheEdges) {
    for (NativeTarget target : runnableTargets()) {
        for (const Case& example : cases()) {
            // Red for each lane, green for all of them at once. Not by uniforms, which are numbers.
            const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [&](const Group& group) {
                const Color color = group.floats(0),
                            same = fetchTexel(group.ir, group.input(0, TextureFormat::rgba32Float), group.x,
                                              group.y, nullptr, true);
                const auto count = std::ptrdiff_t(example.operands.size());
                const std::vector<Value*> each(color.begin(), color.begin() + count),
                    one(same.begin(), same.begin() + count);
                Value* const result = standardFunction(group.ir, example.function, each);
                return Color{result, standardFunction(group.ir, example.function, one), result, result};
            });
            Image input(TextureFormat::rgba32Float, 16, 1), result = input;
            for (int x = 0; x < 16; ++x) {
                std::ranges::copy(example.operands, input.row<float>(0) + 4 * x);
            }
            draw(*kernel, {&input}, result);
            for (int i : {0, 1, 60, 61}) {
                EXPECT_THAT(result.row<float>(0)[i], testing::NanSensitiveFloatEq(example.expected))
                    << nativeTargetName(target) << ", function " << example.function << " of "
                    << testing::PrintToString(example.operands);
            }
        }
    }
}

struct Packing {
    unsigned pack, unpack;
    unsigned components;
    std::function<double(double)> expected;  ///< of a component, after both
};

TEST(LaneFunctions, PacksAndUnpacks) {
    const auto signedSteps = [](double most) {
        return [=](double x) { return std::nearbyint(std::clamp(x, -1.0, 1.0) * most) / most; };
    };
    const auto steps = [](double most) {
        return [=](double x) { return std::nearbyint(std::clamp(x, 0.0, 1.0) * most) / most; };
    };
    const Packing packings[] = {
        {GLSLstd450PackUnorm4x8, GLSLstd450UnpackUnorm4x8, 4, steps(255)},
        {GLSLstd450PackSnorm4x8, GLSLstd450UnpackSnorm4x8, 4, signedSteps(127)},
        {GLSLstd450PackUnorm2x16, GLSLstd450UnpackUnorm2x16, 2, steps(65535)},
        {GLSLstd450PackSnorm2x16, GLSLstd450UnpackSnorm2x16, 2, signedSteps(32767)},
        {GLSLstd450PackHalf2x16, GLSLstd450UnpackHalf2x16, 2,
         [](double x) { return std::nearbyint(x * 512) / 512; }},
    };
    Image input(TextureFormat::rgba32Float, 16, 1);
    for (int i = 0; i < 64; ++i) input.row<float>(0)[i] = (i % 2 ? 1.0f : -1.0f) * (1 + float(i) / 64);
    for (int i = 32; i < 64; ++i) input.row<float>(0)[i] *= 0.37f;
    for (NativeTarget target : runnableTargets()) {
        for (const Packing& packing : packings) {
            const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [&](const Group& group) {
                Color color = group.floats(0);
                const llvm::ArrayRef<Value*> components(color.data(), packing.components);
                Value* const word = standardFunction(group.ir, packing.pack, components);
                Value* const back = standardFunction(group.ir, packing.unpack, {word});
                for (unsigned i = 0; i < packing.components; ++i)
                    color[i] = group.ir.CreateExtractValue(back, i);
                return color;
            });
            Image result(TextureFormat::rgba32Float, 16, 1);
            draw(*kernel, {&input}, result);
            for (int i = 0; i < 64; ++i) {
                const float value = input.row<float>(0)[i];
                const bool isPacked = i % 4 < int(packing.components);
                // Half floats have eleven bits.
                const double tolerance = packing.pack == GLSLstd450PackHalf2x16 ? 0.001 : 1e-6;
                EXPECT_NEAR(result.row<float>(0)[i], isPacked ? packing.expected(value) : value, tolerance)
                    << packing.pack << " of " << value;
            }
        }
    }
}

}  // namespace
}  // namespace qv::native::test
