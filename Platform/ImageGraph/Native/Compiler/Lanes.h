#pragma once

#include <llvm/IR/IRBuilder.h>

#include <array>

#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/ImageGraph/Planner.h"

/// Code for sixteen neighbouring pixels of a row at once. A value is uniform, one scalar for all of them, or
/// varying, a vector of kKernelLanes. What is said of values holds for both; mixed operands are spread.
namespace qv::native {

using llvm::Value;
using Builder = llvm::IRBuilder<>;
/// Red, green, blue, alpha: floats, each uniform or varying.
using Color = std::array<Value*, 4>;

inline bool isVarying(const Value* value) {
    return value->getType()->isVectorTy();
}
/// The value in every lane; a varying one as it is.
Value* spread(Builder& ir, Value* value);
/// Spreads both when one is varying.
void unify(Builder& ir, Value*& a, Value*& b);

/// A float as the nearest whole number towards zero, clamped to the type; not a number gives 0.
Value* toSigned(Builder& ir, Value* value);
Value* toUnsigned(Builder& ir, Value* value);

/// A function of GLSL.std.450 that works component by component, by its number there; nil for one that does
/// not. What packs takes the components, in order; what unpacks gives an array of them. Elementary functions
/// are polynomials of our own, the same on every instruction set: errors of at most three units in the last
/// place, sines up to arguments of 10,000. A minimum or maximum with what is not a number is the other
/// operand.
Value* standardFunction(Builder& ir, unsigned number, llvm::ArrayRef<Value*> operands);

/// A texture as a kernel reaches it: scalars, loaded once for each call.
struct TextureOperands {
    Value* pixels;          ///< pointer
    Value* rowBytes;        ///< i64
    Value *width, *height;  ///< i32
    TextureFormat format;
};

/// Fetching and sampling may begin new blocks: `ir` then goes on in the last one.

/// The texel at (x, y), i32. Coordinates outside are clamped unless `isInside`. When `x` is varying and
/// `firstX`, a uniform i32, is given, lane i lies at `firstX` + i, before clamping.
Color fetchTexel(Builder& ir, const TextureOperands& texture, Value* x, Value* y, Value* firstX,
                 bool isInside);
/// Bilinear at (u, v), 0..1 over the texture, continued by its border. Places are rounded to 1/512 of a
/// texel, so that a texel's middle gives the texel; not a number counts as 0.
Color sampleTexture(Builder& ir, const TextureOperands& texture, Value* u, Value* v);
/// Writes kKernelLanes texels from `address` on, converted to the format: 8-bit channels are clamped and
/// rounded to the nearest, not a number gives 0.
void storeTexels(Builder& ir, TextureFormat format, Value* address, const Color& color);

}  // namespace qv::native
