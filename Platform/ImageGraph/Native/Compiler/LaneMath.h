#pragma once

#include "Platform/ImageGraph/Native/Compiler/Lanes.h"

/// What standard functions and texture access are made of. Operands of one call have one type, which the
/// result has too.
namespace qv::native {

inline Value* number(const Value* like, double value) {
    return llvm::ConstantFP::get(like->getType(), value);
}
inline Value* whole(const Value* like, std::uint64_t value) {
    return llvm::ConstantInt::get(like->getType(), value);
}
/// The scalar type with as many lanes as `like`.
llvm::Type* laneType(const Value* like, llvm::Type* scalar);
Value* toBits(Builder& ir, Value* value);
Value* fromBits(Builder& ir, Value* bits);

/// a·b + c, rounded once.
Value* fma(Builder& ir, Value* a, Value* b, Value* c);
Value* absolute(Builder& ir, Value* value);
Value* squareRoot(Builder& ir, Value* value);
/// The larger and the smaller: a number where one is not.
Value* maximum(Builder& ir, Value* a, Value* b);
Value* minimum(Builder& ir, Value* a, Value* b);
/// Within low..high; not a number gives `low`.
Value* clamp(Builder& ir, Value* value, Value* low, Value* high);

Value* sine(Builder& ir, Value* x);
Value* cosine(Builder& ir, Value* x);
Value* tangent(Builder& ir, Value* x);
Value* arcSine(Builder& ir, Value* x);
Value* arcCosine(Builder& ir, Value* x);
/// The angle of (x, y), −π..π; 0 at the origin.
Value* arcTangent(Builder& ir, Value* y, Value* x);
/// e and 2 to the power of x; 0 below the normal numbers, infinite above 127.5.
Value* exponential(Builder& ir, Value* x);
Value* exponential2(Builder& ir, Value* x);
/// −∞ at 0, not a number below.
Value* logarithm(Builder& ir, Value* x);
Value* logarithm2(Builder& ir, Value* x);
/// 0 for x = 0, not a number below.
Value* power(Builder& ir, Value* x, Value* y);
Value* hyperbolicSine(Builder& ir, Value* x);
Value* hyperbolicCosine(Builder& ir, Value* x);
Value* hyperbolicTangent(Builder& ir, Value* x);
Value* areaSine(Builder& ir, Value* x);
Value* areaCosine(Builder& ir, Value* x);
Value* areaTangent(Builder& ir, Value* x);

}  // namespace qv::native
