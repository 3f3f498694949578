// Bounds that are left out: those that nothing reaches, and no others.

#include "Platform/ImageGraph/Native/Compiler/Redundancies.h"

#include <glslang/SPIRV/GLSL.std.450.h>
#include <llvm/IR/InstIterator.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <random>

#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"
#include "Platform/ImageGraph/Native/Compiler/TargetCalls.h"
#include "Tests/Native/LaneKernel.h"

namespace qv::native::test {
namespace {

constexpr int kWidth = 48, kHeight = 16;

Value* constant(Value* like, float value) {
    return llvm::ConstantFP::get(like->getType(), value);
}

Value* clamped(Builder& ir, Value* value) {
    return standardFunction(ir, GLSLstd450FClamp, {value, constant(value, 0), constant(value, 1)});
}

Value* absolute(Builder& ir, Value* value) {
    return standardFunction(ir, GLSLstd450FAbs, {value});
}

Value* root(Builder& ir, Value* value) {
    return standardFunction(ir, GLSLstd450Sqrt, {value});
}

/// Word `index` behind the sides of the output.
Value* uniform(const Group& group, unsigned index) {
    return group.word(2 + index, group.ir.getFloatTy());
}

Color texel(const Group& group) {
    return fetchTexel(group.ir, group.input(0, TextureFormat::rgba8), group.lanes(), group.y, group.x, true);
}

/// Between the texels, at other places in every row.
Color sample(const Group& group) {
    Builder& ir = group.ir;
    const auto place = [&](Value* pixel, float scale) {
        Value* const number = ir.CreateUIToFP(pixel, laneType(pixel, ir.getFloatTy()));
        return ir.CreateFMul(number, constant(number, scale));
    };
    return sampleTexture(ir, group.input(0, TextureFormat::rgba8), place(group.lanes(), 0.0173f),
                         place(group.y, 0.057f));
}

/// How many bounds are left of those that a value is given.
int boundsLeft(const std::function<Value*(const Group&)>& value) {
    llvm::LLVMContext context;
    const auto module = moduleOf(context, TextureFormat::rgba32Float, [&](const Group& group) {
        Value* const made = value(group);
        return Color{made, made, made, made};
    });
    llvm::Function& function = *module->getFunction(kNativeKernelSymbol);
    dropNeedlessBounds(function);
    int count = 0;
    for (llvm::Instruction& each : llvm::instructions(function)) count += extremeOf(&each).has_value();
    return count;
}

TEST(Redundancies, BoundsGoWhereNothingReachesThem) {
    EXPECT_EQ(boundsLeft([](const Group& g) { return clamped(g.ir, texel(g)[3]); }), 0);
    EXPECT_EQ(boundsLeft([](const Group& g) { return clamped(g.ir, clamped(g.ir, texel(g)[0])); }), 0);
    EXPECT_EQ(boundsLeft([](const Group& g) {
                  const Color c = texel(g);
                  return clamped(
                      g.ir, g.ir.CreateFMul(root(g.ir, c[0]), absolute(g.ir, g.ir.CreateFSub(c[1], c[2]))));
              }),
              0);
    // The upper one of a sum, both of what a uniform has scaled, the lower one of a difference.
    EXPECT_EQ(
        boundsLeft([](const Group& g) { return clamped(g.ir, g.ir.CreateFAdd(texel(g)[0], texel(g)[1])); }),
        1);
    EXPECT_EQ(boundsLeft([](const Group& g) {
                  return clamped(g.ir, g.ir.CreateFMul(texel(g)[0], spread(g.ir, uniform(g, 0))));
              }),
              2);
    EXPECT_EQ(
        boundsLeft([](const Group& g) { return clamped(g.ir, g.ir.CreateFSub(texel(g)[0], texel(g)[1])); }),
        1);
    // A quotient by a side of the output, not by a uniform.
    const auto share = [](const Group& g, Value* divisor) {
        Value* const value = g.ir.CreateFDiv(texel(g)[0], spread(g.ir, divisor));
        return clamped(g.ir, value);
    };
    EXPECT_EQ(boundsLeft([&](const Group& g) { return share(g, g.word(1, g.ir.getFloatTy())); }), 0);
    EXPECT_EQ(boundsLeft([&](const Group& g) { return share(g, uniform(g, 0)); }), 2);
    // What may be no number comes out of a clamp as one.
    EXPECT_EQ(boundsLeft([](const Group& g) {
                  const Color c = texel(g);
                  return clamped(g.ir, g.ir.CreateFDiv(c[0], c[1]));
              }),
              2);
    EXPECT_EQ(boundsLeft([](const Group& g) {
                  const Color c = texel(g);
                  Value* const value = root(g.ir, g.ir.CreateFSub(c[0], c[1]));
                  Value* const number = standardFunction(g.ir, GLSLstd450FClamp,
                                                         {value, constant(value, -1), constant(value, 1)});
                  return standardFunction(g.ir, GLSLstd450FMax, {number, constant(value, 0)});
              }),
              3);
    // Samples too lie between black and white; their places have bounds of their own.
    EXPECT_EQ(boundsLeft([](const Group& g) { return clamped(g.ir, sample(g)[2]); }),
              boundsLeft([](const Group& g) { return sample(g)[2]; }));
    // All of an 8-bit number, scaled, is 1 and not a little more.
    EXPECT_EQ(
        boundsLeft([](const Group& g) {
            return standardFunction(g.ir, GLSLstd450FMin, {texel(g)[1], constant(texel(g)[1], 0.9999999f)});
        }),
        1);
}

/// An operation on two of the numbers before.
struct Step {
    unsigned kind, first, second;
};
constexpr unsigned kKinds = 8;
constexpr float kUniforms[] = {-0.75f, 0, 0.5f, 1, 2.5f};

/// Sums, products and bounds of four texels and a few uniforms, drawn by chance.
std::vector<Step> stepsOf(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Step> steps;
    for (unsigned known = 4 + std::size(kUniforms); steps.size() < 9; ++known)
        steps.push_back(
            {unsigned(random() % kKinds), unsigned(random() % known), unsigned(random() % known)});
    return steps;
}

Value* built(Builder& ir, const Step& step, Value* a, Value* b) {
    unify(ir, a, b);
    switch (step.kind) {
        case 0:
            return ir.CreateFAdd(a, b);
        case 1:
            return ir.CreateFSub(a, b);
        case 2:
            return ir.CreateFMul(a, b);
        case 3:
            return clamped(ir, a);
        case 4:
            return standardFunction(ir, GLSLstd450FMin, {a, b});
        case 5:
            return standardFunction(ir, GLSLstd450FMax, {a, b});
        case 6:
            return absolute(ir, a);
        default:
            return root(ir, absolute(ir, a));
    }
}

double computed(const Step& step, double a, double b) {
    switch (step.kind) {
        case 0:
            return a + b;
        case 1:
            return a - b;
        case 2:
            return a * b;
        case 3:
            return std::clamp(a, 0.0, 1.0);
        case 4:
            return std::min(a, b);
        case 5:
            return std::max(a, b);
        case 6:
            return std::abs(a);
        default:
            return std::sqrt(std::abs(a));
    }
}

TEST(Redundancies, TheOtherBoundsStay) {
    Image input(TextureFormat::rgba8, kWidth, kHeight), result(TextureFormat::rgba32Float, kWidth, kHeight);
    std::mt19937 random(7);
    for (int y = 0; y < kHeight; ++y) {
        // Many at the ends.
        for (int i = 0; i < 4 * kWidth; ++i)
            input.row<std::uint8_t>(y)[i] = std::uint8_t(std::clamp(int(random() % 384) - 64, 0, 255));
    }
    std::vector<std::uint32_t> words{std::bit_cast<std::uint32_t>(float(kWidth)),
                                     std::bit_cast<std::uint32_t>(float(kHeight))};
    for (float uniform : kUniforms) words.push_back(std::bit_cast<std::uint32_t>(uniform));
    const NativeTarget* const target = nativeTargetOfMachine();
    if (!target) GTEST_SKIP() << "no instructions that kernels are compiled for";
    for (unsigned seed = 0; seed < 400; ++seed) {
        const std::vector<Step> steps = stepsOf(seed);
        const auto kernel = kernelOf(*target, TextureFormat::rgba32Float, [&](const Group& group) {
            const Color color = texel(group);
            std::vector<Value*> values(color.begin(), color.end());
            for (unsigned i = 0; i < std::size(kUniforms); ++i) values.push_back(uniform(group, i));
            for (const Step& step : steps)
                values.push_back(built(group.ir, step, values[step.first], values[step.second]));
            return Color{values.end()[-1], values.end()[-2], values.end()[-3], values.end()[-4]};
        });
        draw(*kernel, {&input}, result, words);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                std::vector<double> values;
                for (int i = 0; i < 4; ++i) values.push_back(input.row<std::uint8_t>(y)[4 * x + i] / 255.0);
                values.insert(values.end(), std::begin(kUniforms), std::end(kUniforms));
                double largest = 1;
                for (const Step& step : steps) {
                    values.push_back(computed(step, values[step.first], values[step.second]));
                    largest = std::max(largest, std::abs(values.back()));
                }
                // A root makes much of a small error.
                for (int i = 0; i < 4; ++i) {
                    ASSERT_NEAR(result.row<float>(y)[4 * x + i], values.end()[-1 - i], 2e-3 * largest)
                        << "seed " << seed << ", channel " << i << " of " << x << ", " << y;
                }
            }
        }
    }
}

TEST(Redundancies, SamplesOfWhiteAreWhite) {
    Image input(TextureFormat::rgba8, kWidth, kHeight), result(TextureFormat::rgba32Float, kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) std::fill_n(input.row<std::uint8_t>(y), 4 * kWidth, std::uint8_t(255));
    for (NativeTarget target : runnableTargets()) {
        const auto kernel = kernelOf(target, TextureFormat::rgba32Float, sample);
        draw(*kernel, {&input}, result);
        for (int y = 0; y < kHeight; ++y) {
            for (int i = 0; i < 4 * kWidth; ++i) ASSERT_EQ(result.row<float>(y)[i], 1) << i << ", " << y;
        }
    }
}

}  // namespace
}  // namespace qv::native::test
