#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"
#include "Platform/ImageGraph/Native/Compiler/TargetCalls.h"

namespace qv::native {

namespace {

bool isConstant(const Value* value) {
    return llvm::isa<llvm::Constant>(value);
}

/// These give the second operand when one is not a number; here the first then, unless both are not.
template <class Choice>
Value* numberOfTwo(Builder& ir, Value* a, Value* b, Choice choice) {
    if (isConstant(b)) return choice(ir, a, b);
    if (isConstant(a)) return choice(ir, b, a);
    return ir.CreateSelect(ir.CreateFCmpUNO(b, b), a, choice(ir, a, b));
}

}  // namespace

Value* spread(Builder& ir, Value* value) {
    return isVarying(value) ? value : ir.CreateVectorSplat(kKernelLanes, value);
}

void unify(Builder& ir, Value*& a, Value*& b) {
    if (isVarying(a)) b = spread(ir, b);
    if (isVarying(b)) a = spread(ir, a);
}

llvm::Type* laneType(const Value* like, llvm::Type* scalar) {
    const auto* vector = llvm::dyn_cast<llvm::FixedVectorType>(like->getType());
    return vector ? llvm::FixedVectorType::get(scalar, vector->getNumElements()) : scalar;
}

Value* toBits(Builder& ir, Value* value) {
    return ir.CreateBitCast(value, laneType(value, ir.getInt32Ty()));
}

Value* fromBits(Builder& ir, Value* bits) {
    return ir.CreateBitCast(bits, laneType(bits, ir.getFloatTy()));
}

Value* maximum(Builder& ir, Value* a, Value* b) {
    return numberOfTwo(ir, a, b, larger);
}

Value* minimum(Builder& ir, Value* a, Value* b) {
    return numberOfTwo(ir, a, b, smaller);
}

Value* clamp(Builder& ir, Value* value, Value* low, Value* high) {
    return smaller(ir, larger(ir, value, low), high);
}

// The largest floats below 2³¹ and 2³².
Value* toSigned(Builder& ir, Value* value) {
    Value* const known = ir.CreateSelect(ir.CreateFCmpORD(value, value), value, number(value, 0));
    return ir.CreateFPToSI(clamp(ir, known, number(value, -0x1p31), number(value, 0x1.fffffep30)),
                           laneType(value, ir.getInt32Ty()));
}

Value* toUnsigned(Builder& ir, Value* value) {
    return ir.CreateFPToUI(clamp(ir, value, number(value, 0), number(value, 0x1.fffffep31)),
                           laneType(value, ir.getInt32Ty()));
}

}  // namespace qv::native
