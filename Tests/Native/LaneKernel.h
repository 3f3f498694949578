#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/Lanes.h"
#include "Platform/ImageGraph/Native/Compiler/ObjectCode.h"
#include "Platform/ImageGraph/Native/Compiler/ObjectLink.h"
#include "Platform/ImageGraph/Native/LoadedKernel.h"

namespace qv::native::test {

/// The targets that this machine runs.
inline std::vector<NativeTarget> runnableTargets() {
    const NativeTarget* best = nativeTargetOfMachine();
    if (!best) return {};
    if (*best == NativeTarget::avx512) return {NativeTarget::avx2, NativeTarget::avx512};
    return {*best};
}

/// An image padded as kernels expect it.
class Image {
  public:
    Image(TextureFormat format, int width, int height) : format_(format), width_(width), height_(height) {
        const std::int64_t bytes = std::int64_t(width + kKernelLanes) * texelBytes(format);
        rowBytes_ = (bytes + 63) / 64 * 64;
        bytes_.resize(std::size_t(rowBytes_ * (height + 1)) + 64, 0xA5);
    }
    NativeImage native() { return {bytes_.data(), rowBytes_, width_, height_}; }
    template <class T>
    T* row(int y) {
        return reinterpret_cast<T*>(bytes_.data() + y * rowBytes_);
    }
    int width() const { return width_; }
    int height() const { return height_; }
    TextureFormat format() const { return format_; }
    /// Whether the pixels, not what lies between them, are the same.
    bool operator==(const Image& other) const {
        for (int y = 0; y < height_; ++y) {
            const std::size_t at = std::size_t(y * rowBytes_);
            const std::size_t count = std::size_t(width_ * texelBytes(format_));
            if (std::memcmp(bytes_.data() + at, other.bytes_.data() + at, count) != 0) return false;
        }
        return true;
    }

  private:
    TextureFormat format_;
    int width_, height_;
    std::int64_t rowBytes_;
    std::vector<std::uint8_t> bytes_;
};

/// What the body of a kernel is given: sixteen pixels from (x, y) on.
struct Group {
    Builder& ir;
    Value *arguments, *x, *y;  ///< uniform

    Value* field(std::uint64_t offset, llvm::Type* type) const {
        return ir.CreateLoad(type, ir.CreateConstGEP1_64(ir.getInt8Ty(), arguments, offset));
    }
    TextureOperands input(unsigned index, TextureFormat format) const {
        Value* const inputs = field(offsetof(NativeKernelArguments, inputs), ir.getPtrTy());
        const auto at = [&](std::uint64_t offset, llvm::Type* type) {
            return ir.CreateLoad(
                type, ir.CreateConstGEP1_64(ir.getInt8Ty(), inputs, index * sizeof(NativeImage) + offset));
        };
        return {at(offsetof(NativeImage, pixels), ir.getPtrTy()),
                at(offsetof(NativeImage, rowBytes), ir.getInt64Ty()),
                at(offsetof(NativeImage, width), ir.getInt32Ty()),
                at(offsetof(NativeImage, height), ir.getInt32Ty()), format};
    }
    /// Of an image of floats.
    Color floats(unsigned index) const {
        return fetchTexel(ir, input(index, TextureFormat::rgba32Float), lanes(), y, x, true);
    }
    Value* lanes() const {
        Value* value = spread(ir, x);
        for (unsigned i = 0; i < kKernelLanes; ++i) {
            value = ir.CreateInsertElement(value, ir.CreateAdd(x, ir.getInt32(i)), i);
        }
        return value;
    }
    /// The word of the pushed block as a float or a whole number.
    Value* word(unsigned index, llvm::Type* type) const {
        Value* const words = field(0, ir.getPtrTy());
        return ir.CreateLoad(type, ir.CreateConstGEP1_32(ir.getInt32Ty(), words, index));
    }
};

using Body = std::function<Color(const Group&)>;

/// A kernel that gives every pixel what `body` says.
inline std::unique_ptr<llvm::Module> moduleOf(llvm::LLVMContext& context, TextureFormat output,
                                              const Body& body) {
    auto module = std::make_unique<llvm::Module>("test", context);
    Builder ir(context);
    llvm::Type* const words[] = {ir.getPtrTy(), ir.getInt32Ty(), ir.getInt32Ty()};
    auto* const function =
        llvm::Function::Create(llvm::FunctionType::get(ir.getVoidTy(), words, false),
                               llvm::Function::ExternalLinkage, kNativeKernelSymbol, *module);
    const auto block = [&] { return llvm::BasicBlock::Create(context, "", function); };
    llvm::BasicBlock *const entry = block(), *const row = block(), *const column = block(),
                            *const end = block();
    ir.SetInsertPoint(entry);
    Value* const arguments = function->getArg(0);
    const Group none{ir, arguments, nullptr, nullptr};
    constexpr auto kTarget = offsetof(NativeKernelArguments, target);
    Value* const pixels = none.field(kTarget + offsetof(NativeImage, pixels), ir.getPtrTy());
    Value* const rowBytes = none.field(kTarget + offsetof(NativeImage, rowBytes), ir.getInt64Ty());
    Value* const width = none.field(kTarget + offsetof(NativeImage, width), ir.getInt32Ty());
    ir.CreateCondBr(ir.CreateICmpSLT(function->getArg(1), function->getArg(2)), row, end);
    ir.SetInsertPoint(row);
    llvm::PHINode* const y = ir.CreatePHI(ir.getInt32Ty(), 2);
    y->addIncoming(function->getArg(1), entry);
    ir.CreateBr(column);
    ir.SetInsertPoint(column);
    llvm::PHINode* const x = ir.CreatePHI(ir.getInt32Ty(), 2);
    x->addIncoming(ir.getInt32(0), row);
    const Color color = body({ir, arguments, x, y});
    Value* const offset = ir.CreateAdd(
        ir.CreateMul(ir.CreateSExt(y, ir.getInt64Ty()), rowBytes),
        ir.CreateSExt(ir.CreateMul(x, ir.getInt32(unsigned(texelBytes(output)))), ir.getInt64Ty()));
    storeTexels(ir, output, ir.CreateGEP(ir.getInt8Ty(), pixels, offset), color);
    Value* const nextX = ir.CreateAdd(x, ir.getInt32(kKernelLanes));
    x->addIncoming(nextX, ir.GetInsertBlock());
    llvm::BasicBlock* const rowEnd = block();
    ir.CreateCondBr(ir.CreateICmpSLT(nextX, width), column, rowEnd);
    ir.SetInsertPoint(rowEnd);
    Value* const nextY = ir.CreateAdd(y, ir.getInt32(1));
    y->addIncoming(nextY, rowEnd);
    ir.CreateCondBr(ir.CreateICmpSLT(nextY, function->getArg(2)), row, end);
    ir.SetInsertPoint(end);
    ir.CreateRetVoid();
    return module;
}

/// Nil, with a failure noted, when it cannot be made.
inline std::shared_ptr<const LoadedKernel> kernelOf(NativeTarget target, TextureFormat output,
                                                    const Body& body) {
    llvm::LLVMContext context;
    std::string error;
    const auto object = objectOf(*moduleOf(context, output, body), target, &error);
    EXPECT_EQ(error, "");
    auto kernel = LoadedKernel::load(linkedCode(object, &error), &error);
    EXPECT_TRUE(kernel) << error;
    return kernel;
}

inline void draw(const LoadedKernel& kernel, std::vector<Image*> inputs, Image& target,
                 std::vector<std::uint32_t> words = {}) {
    std::vector<NativeImage> images;
    for (Image* input : inputs) images.push_back(input->native());
    NativeKernelArguments arguments;
    arguments.words = words.data();
    arguments.inputs = images.data();
    arguments.target = target.native();
    kernel.function()(&arguments, 0, target.height());
}

}  // namespace qv::native::test
