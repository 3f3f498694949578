#include <glslang/SPIRV/GLSL.std.450.h>

#include <algorithm>
#include <array>
#include <numbers>

#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"

namespace qv::native {

namespace {

using llvm::Intrinsic::ID;

using Operands = llvm::ArrayRef<Value*>;

Value* unary(Builder& ir, ID id, Value* x) {
    return ir.CreateUnaryIntrinsic(id, x);
}
Value* binary(Builder& ir, ID id, Value* a, Value* b) {
    return ir.CreateBinaryIntrinsic(id, a, b);
}

Value* signOf(Builder& ir, Value* x) {
    Value *const zero = number(x, 0), *const one = number(x, 1);
    Value* const notPositive = ir.CreateSelect(ir.CreateFCmpOLT(x, zero), ir.CreateFNeg(one), zero);
    return ir.CreateSelect(ir.CreateFCmpOGT(x, zero), one, notPositive);
}

Value* wholeSign(Builder& ir, Value* x) {
    Value* const one = whole(x, 1);
    return binary(ir, llvm::Intrinsic::smax, binary(ir, llvm::Intrinsic::smin, x, one), ir.CreateNeg(one));
}

/// a at t = 0 and b at t = 1, exactly.
Value* mix(Builder& ir, Value* a, Value* b, Value* t) {
    return fma(ir, t, b, fma(ir, ir.CreateFNeg(t), a, a));
}

Value* smoothStep(Builder& ir, Value* low, Value* high, Value* x) {
    Value* const ratio = ir.CreateFDiv(ir.CreateFSub(x, low), ir.CreateFSub(high, low));
    Value* const t = clamp(ir, ratio, number(x, 0), number(x, 1));
    return ir.CreateFMul(ir.CreateFMul(t, t), fma(ir, t, number(x, -2), number(x, 3)));
}

/// x·2^n in two steps, so that neither factor is out of range before the result is.
Value* scaledByPowerOfTwo(Builder& ir, Value* x, Value* n) {
    const auto factor = [&](Value* exponent) {
        exponent = binary(ir, llvm::Intrinsic::smax, exponent, whole(n, std::uint64_t(-126)));
        exponent = binary(ir, llvm::Intrinsic::smin, exponent, whole(n, 127));
        return fromBits(ir, ir.CreateShl(ir.CreateAdd(exponent, whole(n, 127)), 23));
    };
    Value* const half = ir.CreateAShr(n, 1);
    return ir.CreateFMul(ir.CreateFMul(x, factor(half)), factor(ir.CreateSub(n, half)));
}

/// A number of `bits` bits: x, clamped, times the largest, rounded to the nearest.
Value* packedNumber(Builder& ir, Value* x, unsigned bits, bool isSigned) {
    const double most = double((1u << (isSigned ? bits - 1 : bits)) - 1);
    x = clamp(ir, x, number(x, isSigned ? -1 : 0), number(x, 1));
    Value* const scaled = unary(ir, llvm::Intrinsic::roundeven, ir.CreateFMul(x, number(x, most)));
    Value* const known = ir.CreateFPToSI(scaled, laneType(x, ir.getInt32Ty()));
    return ir.CreateAnd(known, (std::uint64_t(1) << bits) - 1);
}

Value* packed(Builder& ir, Operands components, unsigned bits, bool isSigned) {
    Value* sum = nullptr;
    for (std::size_t i = 0; i < components.size(); ++i) {
        Value* const part = ir.CreateShl(packedNumber(ir, components[i], bits, isSigned), i * bits);
        sum = sum ? ir.CreateOr(sum, part) : part;
    }
    return sum;
}

Value* packedHalves(Builder& ir, Operands components) {
    Value* sum = nullptr;
    for (std::size_t i = 0; i < components.size(); ++i) {
        Value* const half = ir.CreateFPTrunc(components[i], laneType(components[i], ir.getHalfTy()));
        Value* const bits = ir.CreateZExt(ir.CreateBitCast(half, laneType(half, ir.getInt16Ty())),
                                          laneType(half, ir.getInt32Ty()));
        sum = sum ? ir.CreateOr(sum, ir.CreateShl(bits, 16)) : bits;
    }
    return sum;
}

/// An array of the values that `part` gives for each index.
template <class Part>
Value* array(Builder& ir, unsigned count, Part part) {
    Value* result = nullptr;
    for (unsigned i = 0; i < count; ++i) {
        Value* const value = part(i);
        if (!result) result = llvm::PoisonValue::get(llvm::ArrayType::get(value->getType(), count));
        result = ir.CreateInsertValue(result, value, i);
    }
    return result;
}

Value* unpacked(Builder& ir, Value* word, unsigned bits, bool isSigned) {
    llvm::Type* const floats = laneType(word, ir.getFloatTy());
    return array(ir, 32 / bits, [&](unsigned i) -> Value* {
        if (!isSigned) {
            Value* const field = ir.CreateAnd(ir.CreateLShr(word, i * bits), (1u << bits) - 1);
            return ir.CreateFMul(ir.CreateUIToFP(field, floats),
                                 llvm::ConstantFP::get(floats, 1.0 / ((1u << bits) - 1)));
        }
        Value* const field = ir.CreateAShr(ir.CreateShl(word, 32 - (i + 1) * bits), 32 - bits);
        Value* const value = ir.CreateFMul(ir.CreateSIToFP(field, floats),
                                           llvm::ConstantFP::get(floats, 1.0 / ((1u << (bits - 1)) - 1)));
        return maximum(ir, value, number(value, -1));
    });
}

Value* unpackedHalves(Builder& ir, Value* word) {
    return array(ir, 2, [&](unsigned i) {
        Value* const bits = ir.CreateTrunc(ir.CreateLShr(word, 16 * i), laneType(word, ir.getInt16Ty()));
        return ir.CreateFPExt(ir.CreateBitCast(bits, laneType(word, ir.getHalfTy())),
                              laneType(word, ir.getFloatTy()));
    });
}

/// The place of the highest bit; −1 when none is set.
Value* highestBit(Builder& ir, Value* x) {
    return ir.CreateSub(whole(x, 31), binary(ir, llvm::Intrinsic::ctlz, x, ir.getFalse()));
}

Value* lowestBit(Builder& ir, Value* x) {
    Value* const place = binary(ir, llvm::Intrinsic::cttz, x, ir.getFalse());
    return ir.CreateSelect(ir.CreateICmpEQ(x, whole(x, 0)), whole(x, std::uint64_t(-1)), place);
}

}  // namespace

Value* standardFunction(Builder& ir, unsigned function, Operands operands) {
    std::array<Value*, 4> value{};
    std::copy(operands.begin(), operands.end(), value.begin());
    bool varies = false;
    for (const Value* operand : operands) varies |= isVarying(operand);
    for (std::size_t i = 0; varies && i < operands.size(); ++i) value[i] = spread(ir, value[i]);
    Value *const x = value[0], *const y = value[1], *const z = value[2];
    const Operands all(value.data(), operands.size());
    switch (function) {
        case GLSLstd450Round:
        case GLSLstd450RoundEven:
            return unary(ir, llvm::Intrinsic::roundeven, x);
        case GLSLstd450Trunc:
            return unary(ir, llvm::Intrinsic::trunc, x);
        case GLSLstd450FAbs:
            return absolute(ir, x);
        case GLSLstd450SAbs:
            return binary(ir, llvm::Intrinsic::abs, x, ir.getFalse());
        case GLSLstd450FSign:
            return signOf(ir, x);
        case GLSLstd450SSign:
            return wholeSign(ir, x);
        case GLSLstd450Floor:
            return unary(ir, llvm::Intrinsic::floor, x);
        case GLSLstd450Ceil:
            return unary(ir, llvm::Intrinsic::ceil, x);
        case GLSLstd450Fract:
            return ir.CreateFSub(x, unary(ir, llvm::Intrinsic::floor, x));
        case GLSLstd450Radians:
            return ir.CreateFMul(x, number(x, std::numbers::pi / 180));
        case GLSLstd450Degrees:
            return ir.CreateFMul(x, number(x, 180 / std::numbers::pi));
        case GLSLstd450Sin:
            return sine(ir, x);
        case GLSLstd450Cos:
            return cosine(ir, x);
        case GLSLstd450Tan:
            return tangent(ir, x);
        case GLSLstd450Asin:
            return arcSine(ir, x);
        case GLSLstd450Acos:
            return arcCosine(ir, x);
        case GLSLstd450Atan:
            return arcTangent(ir, x, number(x, 1));
        case GLSLstd450Sinh:
            return hyperbolicSine(ir, x);
        case GLSLstd450Cosh:
            return hyperbolicCosine(ir, x);
        case GLSLstd450Tanh:
            return hyperbolicTangent(ir, x);
        case GLSLstd450Asinh:
            return areaSine(ir, x);
        case GLSLstd450Acosh:
            return areaCosine(ir, x);
        case GLSLstd450Atanh:
            return areaTangent(ir, x);
        case GLSLstd450Atan2:
            return arcTangent(ir, x, y);
        case GLSLstd450Pow:
            return power(ir, x, y);
        case GLSLstd450Exp:
            return exponential(ir, x);
        case GLSLstd450Log:
            return logarithm(ir, x);
        case GLSLstd450Exp2:
            return exponential2(ir, x);
        case GLSLstd450Log2:
            return logarithm2(ir, x);
        case GLSLstd450Sqrt:
            return squareRoot(ir, x);
        case GLSLstd450InverseSqrt:
            return ir.CreateFDiv(number(x, 1), squareRoot(ir, x));
        case GLSLstd450FMin:
        case GLSLstd450NMin:
            return minimum(ir, x, y);
        case GLSLstd450FMax:
        case GLSLstd450NMax:
            return maximum(ir, x, y);
        case GLSLstd450FClamp:
        case GLSLstd450NClamp:
            return clamp(ir, x, y, z);
        case GLSLstd450UMin:
            return binary(ir, llvm::Intrinsic::umin, x, y);
        case GLSLstd450SMin:
            return binary(ir, llvm::Intrinsic::smin, x, y);
        case GLSLstd450UMax:
            return binary(ir, llvm::Intrinsic::umax, x, y);
        case GLSLstd450SMax:
            return binary(ir, llvm::Intrinsic::smax, x, y);
        case GLSLstd450UClamp:
            return binary(ir, llvm::Intrinsic::umin, binary(ir, llvm::Intrinsic::umax, x, y), z);
        case GLSLstd450SClamp:
            return binary(ir, llvm::Intrinsic::smin, binary(ir, llvm::Intrinsic::smax, x, y), z);
        case GLSLstd450FMix:
            return mix(ir, x, y, z);
        case GLSLstd450Step:
            return ir.CreateSelect(ir.CreateFCmpOLT(y, x), number(x, 0), number(x, 1));
        case GLSLstd450SmoothStep:
            return smoothStep(ir, x, y, z);
        case GLSLstd450Fma:
            return fma(ir, x, y, z);
        case GLSLstd450Ldexp:
            return scaledByPowerOfTwo(ir, x, y);
        case GLSLstd450PackSnorm4x8:
            return packed(ir, all, 8, true);
        case GLSLstd450PackUnorm4x8:
            return packed(ir, all, 8, false);
        case GLSLstd450PackSnorm2x16:
            return packed(ir, all, 16, true);
        case GLSLstd450PackUnorm2x16:
            return packed(ir, all, 16, false);
        case GLSLstd450PackHalf2x16:
            return packedHalves(ir, all);
        case GLSLstd450UnpackSnorm2x16:
            return unpacked(ir, x, 16, true);
        case GLSLstd450UnpackUnorm2x16:
            return unpacked(ir, x, 16, false);
        case GLSLstd450UnpackHalf2x16:
            return unpackedHalves(ir, x);
        case GLSLstd450UnpackSnorm4x8:
            return unpacked(ir, x, 8, true);
        case GLSLstd450UnpackUnorm4x8:
            return unpacked(ir, x, 8, false);
        case GLSLstd450FindILsb:
            return lowestBit(ir, x);
        case GLSLstd450FindSMsb:
            return highestBit(ir, ir.CreateXor(x, ir.CreateAShr(x, 31)));
        case GLSLstd450FindUMsb:
            return highestBit(ir, x);
        default:
            return nullptr;
    }
}

}  // namespace qv::native
