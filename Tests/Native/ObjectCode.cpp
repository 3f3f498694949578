// From code to something that can be called: contraction, the same bytes on every target, and what goes
// wrong.

#include "Platform/ImageGraph/Native/Compiler/ObjectCode.h"

#include <glslang/SPIRV/GLSL.std.450.h>
#include <gmock/gmock.h>
#include <llvm/IR/IntrinsicsX86.h>
#include <llvm/Support/ErrorHandling.h>

#include <cmath>
#include <random>
#include <thread>

#include "Platform/ImageGraph/Native/Compiler/FatalErrors.h"
#include "Platform/ImageGraph/Native/KernelLibrary.h"
#include "Tests/Native/LaneKernel.h"

namespace qv::native::test {
namespace {

using testing::HasSubstr;

constexpr int kWidth = 64, kHeight = 32;

/// Floats of all sizes and both signs.
Image numbers(unsigned seed) {
    Image image(TextureFormat::rgba32Float, kWidth, kHeight);
    std::mt19937 random(seed);
    for (int y = 0; y < kHeight; ++y) {
        for (int i = 0; i < 4 * kWidth; ++i) {
            const float size = std::ldexp(1 + float(random() % 65536) / 65536, int(random() % 12) - 8);
            image.row<float>(y)[i] = random() % 2 ? size : -size;
        }
    }
    return image;
}

TEST(ObjectCode, SumsOfProductsAreRoundedOnce) {
    Image input = numbers(1);
    for (NativeTarget target : runnableTargets()) {
        const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [](const Group& group) {
            Builder& ir = group.ir;
            const Color c = group.floats(0);
            const auto product = [&](int i, int j) {
                return ir.CreateFMul(c[std::size_t(i)], c[std::size_t(j)]);
            };
            // A product with two uses stays one, and what adds two products contracts the first.
            Value* const shared = product(0, 3);
            return Color{ir.CreateFAdd(product(0, 1), c[2]), ir.CreateFSub(c[1], product(0, 2)),
                         ir.CreateFSub(product(1, 2), product(2, 3)),
                         ir.CreateFMul(ir.CreateFAdd(shared, c[1]), shared)};
        });
        Image result(TextureFormat::rgba32Float, kWidth, kHeight);
        draw(*kernel, {&input}, result);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const float *const c = input.row<float>(y) + 4 * x, *const got = result.row<float>(y) + 4 * x;
                volatile const float second = c[2] * c[3], shared = c[0] * c[3];
                volatile const float sum = shared + c[1];
                ASSERT_EQ(got[0], std::fma(c[0], c[1], c[2]));
                ASSERT_EQ(got[1], std::fma(-c[0], c[2], c[1]));
                ASSERT_EQ(got[2], std::fma(c[1], c[2], -second));
                ASSERT_EQ(got[3], sum * shared);
            }
        }
    }
}

TEST(ObjectCode, TheOtherOneIsTakenOfWhatMayBeNoNumber) {
    Image input(TextureFormat::rgba8, kWidth, kHeight), result(TextureFormat::rgba32Float, kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < 4 * kWidth; ++x) input.row<std::uint8_t>(y)[x] = std::uint8_t((x + y) % 3 * 51);
    }
    for (NativeTarget target : runnableTargets()) {
        const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [](const Group& group) {
            Builder& ir = group.ir;
            const Color c =
                fetchTexel(ir, group.input(0, TextureFormat::rgba8), group.lanes(), group.y, group.x, true);
            Value* const share = ir.CreateFDiv(c[0], c[1]);  // 0 / 0, or infinite, times 0
            Value* const none = ir.CreateFMul(share, ir.CreateFSub(c[1], c[1]));
            const auto of = [&](unsigned function, Value* a, Value* b) {
                return standardFunction(ir, function, {a, b});
            };
            return Color{of(GLSLstd450FMin, c[2], share), of(GLSLstd450FMax, c[2], none),
                         of(GLSLstd450FMin, c[2], c[3]),
                         of(GLSLstd450FMax, c[2],
                            ir.CreateFDiv(c[0], of(GLSLstd450FMax, c[1],
                                                   llvm::ConstantFP::get(c[1]->getType(), 0.5))))};
        });
        draw(*kernel, {&input}, result);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                float c[4];
                for (int i = 0; i < 4; ++i) c[i] = float(input.row<std::uint8_t>(y)[4 * x + i]) / 255;
                const float* const got = result.row<float>(y) + 4 * x;
                volatile const float share = c[0] / c[1], none = share * 0;
                EXPECT_FLOAT_EQ(got[0], std::fmin(c[2], share));
                EXPECT_FLOAT_EQ(got[1], std::fmax(c[2], none));
                EXPECT_FLOAT_EQ(got[2], std::fmin(c[2], c[3]));
                EXPECT_FLOAT_EQ(got[3], std::fmax(c[2], c[0] / std::fmax(c[1], 0.5f)));
            }
        }
    }
}

/// A few dozen operations on four numbers, drawn by chance.
Body randomBody(unsigned seed) {
    return [seed](const Group& group) {
        constexpr unsigned kFunctions[] = {GLSLstd450Sin,  GLSLstd450Exp2, GLSLstd450FAbs,  GLSLstd450Floor,
                                           GLSLstd450Sqrt, GLSLstd450Atan, GLSLstd450Fract, GLSLstd450Log};
        constexpr unsigned kFunctionsOfTwo[] = {GLSLstd450FMin, GLSLstd450FMax, GLSLstd450Pow,
                                                GLSLstd450Step};
        Builder& ir = group.ir;
        std::mt19937 random(seed);
        const Color color = group.floats(0);
        std::vector<Value*> values(color.begin(), color.end());
        values.push_back(ir.CreateSIToFP(group.y, ir.getFloatTy()));
        for (int i = 0; i < 40; ++i) {
            Value *a = values[random() % values.size()], *b = values[random() % values.size()];
            unify(ir, a, b);
            const unsigned kind = random() % 8;
            values.push_back(kind < 2    ? ir.CreateFAdd(a, b)
                             : kind < 4  ? ir.CreateFMul(a, b)
                             : kind == 4 ? ir.CreateFSub(a, b)
                             : kind == 5 ? ir.CreateFDiv(a, b)
                             : kind == 6 ? standardFunction(ir, kFunctions[random() % 8], {a})
                                         : standardFunction(ir, kFunctionsOfTwo[random() % 4], {a, b}));
        }
        Color result;
        for (std::size_t i = 0; i < 4; ++i) {
            Value* const value = spread(ir, values[values.size() - 1 - i]);
            // Which of the many numbers that are none it is, no target promises.
            result[i] = ir.CreateSelect(ir.CreateFCmpORD(value, value), value,
                                        llvm::ConstantFP::get(value->getType(), 0.25));
        }
        return result;
    };
}

TEST(ObjectCode, TargetsGiveTheSameBytes) {
    Image input = numbers(2);
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::vector<Image> results;
        for (NativeTarget target : runnableTargets()) {
            const auto kernel = kernelOf(target, TextureFormat::rgba32Float, randomBody(seed));
            draw(*kernel, {&input}, results.emplace_back(TextureFormat::rgba32Float, kWidth, kHeight));
            EXPECT_TRUE(results.back() == results.front()) << seed;
        }
    }
}

TEST(ObjectCode, ThreadsMakeTheSameObjects) {
    std::vector<std::vector<std::byte>> objects(4);
    std::vector<std::thread> threads;
    for (auto& object : objects) {
        threads.emplace_back([&object] {
            llvm::LLVMContext context;
            std::string error;
            const auto module = moduleOf(context, TextureFormat::rgba8, randomBody(3));
            object = objectOf(*module, NativeTarget::avx2, &error);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const auto& object : objects) {
        EXPECT_FALSE(object.empty());
        EXPECT_EQ(object, objects.front());
    }
}

TEST(ObjectCode, EveryTargetIsCompiledAnywhere) {
    for (NativeTarget target : {NativeTarget::avx2, NativeTarget::avx512, NativeTarget::neon}) {
        llvm::LLVMContext context;
        std::string error;
        const auto module = moduleOf(context, TextureFormat::rgba16Float, [](const Group& group) {
            const Color place = group.floats(0);
            return sampleTexture(group.ir, group.input(1, TextureFormat::bgra8), place[0], place[1]);
        });
        EXPECT_FALSE(objectOf(*module, target, &error).empty()) << error;
    }
}

TEST(ObjectCode, FunctionsOfTheCLibraryAreRefused) {
    llvm::LLVMContext context;
    std::string error;
    const auto module = moduleOf(context, TextureFormat::rgba32Float, [](const Group& group) {
        Color color = group.floats(0);
        color[0] = group.ir.CreateUnaryIntrinsic(llvm::Intrinsic::sin, color[0]);
        return color;
    });
    EXPECT_TRUE(objectOf(*module, NativeTarget::avx2, &error).empty());
    EXPECT_THAT(error, HasSubstr("sinf"));
}

std::vector<std::byte> smallObject(NativeTarget target) {
    llvm::LLVMContext context;
    std::string error;
    return objectOf(
        *moduleOf(context, TextureFormat::rgba8, [](const Group& group) { return group.floats(0); }), target,
        &error);
}

TEST(ObjectCode, ObjectsOfEveryTargetBecomeCodeThatRunsAnywhere) {
    for (NativeTarget target : {NativeTarget::avx2, NativeTarget::avx512, NativeTarget::neon}) {
        std::string error;
        EXPECT_FALSE(linkedCode(smallObject(target), &error).empty()) << error;
    }
    // What holds an address does not.
    llvm::LLVMContext context;
    const auto module =
        moduleOf(context, TextureFormat::rgba8, [](const Group& group) { return group.floats(0); });
    llvm::Function* const kernel = module->getFunction(kNativeKernelSymbol);
    const auto* const table = new llvm::GlobalVariable(*module, kernel->getType(), true,
                                                       llvm::GlobalValue::ExternalLinkage, kernel, "table");
    ASSERT_TRUE(table);
    std::string error;
    const std::vector<std::byte> object = objectOf(*module, NativeTarget::avx2, &error);
    ASSERT_FALSE(object.empty()) << error;
    EXPECT_TRUE(linkedCode(object, &error).empty());
    EXPECT_THAT(error, HasSubstr("linked"));
}

TEST(ObjectCode, WhereLLVMWouldEndTheProcessNothingIsCompiled) {
    llvm::LLVMContext context;
    std::string error;
    const auto module = moduleOf(context, TextureFormat::rgba8, [](const Group& group) {
        group.ir.CreateIntrinsic(llvm::Intrinsic::x86_rdrand_32, {}, {});  // AVX2 does not imply it
        return group.floats(0);
    });
    EXPECT_TRUE(objectOf(*module, NativeTarget::avx2, &error).empty());
    EXPECT_THAT(error, HasSubstr("Cannot select"));
    EXPECT_THROW(survives([] { llvm::report_bad_alloc_error("much"); }, error), std::bad_alloc);
    EXPECT_FALSE(smallObject(NativeTarget::avx2).empty());
}

TEST(ObjectCodeDeathTest, WhatOthersDoWithLLVMEndsTheProcessAsBefore) {
    EXPECT_FALSE(smallObject(NativeTarget::avx2).empty());
    EXPECT_DEATH(llvm::report_fatal_error("theirs"), "LLVM ERROR: theirs");
    EXPECT_DEATH(llvm::report_bad_alloc_error("theirs"), "LLVM ERROR: theirs");
}

TEST(ObjectCode, WhatIsNoObjectIsNotLinked) {
    std::string error;
    const std::vector<std::byte> text(1000, std::byte('x')), nothing;
    for (const auto& bytes : {text, nothing}) {
        error.clear();
        EXPECT_TRUE(linkedCode(bytes, &error).empty());
        EXPECT_NE(error, "");
        error.clear();
        EXPECT_FALSE(LoadedKernel::load(bytes, &error));
        EXPECT_NE(error, "");
    }
}

TEST(KernelLibrary, TellsWhatIsDamaged) {
    const std::map<std::uint64_t, std::vector<std::byte>> objects{
        {5, {std::byte(1), std::byte(2)}},
        {7, {std::byte(3)}},
        {~std::uint64_t(0), smallObject(NativeTarget::avx2)}};
    const std::vector<std::byte> whole = KernelLibrary::serialize("compiler 1", objects);
    const auto library = KernelLibrary::parse(whole, "compiler 1");
    ASSERT_TRUE(library);
    for (const auto& [key, object] : objects) {
        EXPECT_TRUE(std::ranges::equal(library->object(key), object)) << key;
    }
    EXPECT_TRUE(library->object(6).empty());
    EXPECT_TRUE(library->object(0).empty());
    std::string error;
    EXPECT_FALSE(KernelLibrary::parse(whole, "compiler 2", &error));
    EXPECT_THAT(error, HasSubstr("another version"));

    // Wherever a bit falls over, or the file ends, nothing wrong comes out.
    for (std::size_t at = 0; at < whole.size(); at += at < 200 ? 1 : 97) {
        std::vector<std::byte> damaged = whole;
        damaged[at] ^= std::byte(0x10);
        const std::vector<std::byte> cut(whole.begin(), whole.begin() + std::ptrdiff_t(at));
        for (const auto& bytes : {damaged, cut}) {
            const auto read = KernelLibrary::parse(bytes, "compiler 1");
            for (const auto& [key, object] : objects) {
                const auto found = read ? read->object(key) : std::span<const std::byte>();
                ASSERT_TRUE(found.empty() || std::ranges::equal(found, object)) << at;
            }
        }
    }
}

}  // namespace
}  // namespace qv::native::test
