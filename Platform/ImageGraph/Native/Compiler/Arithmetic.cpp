#include "Platform/ImageGraph/Native/Compiler/Arithmetic.h"

#include <fmt/format.h>
#include <glslang/SPIRV/GLSL.std.450.h>
#include <llvm/IR/Constants.h>

#include <algorithm>

#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"

namespace qv::native {

namespace {

using llvm::Intrinsic::ID;

Value* constant(Builder& ir, double value) {
    return llvm::ConstantFP::get(ir.getFloatTy(), value);
}

Value* call(Builder& ir, ID function, Value* a) {
    return ir.CreateUnaryIntrinsic(function, a);
}

/// A quotient. By a divisor that is the same in all lanes it is the product with its reciprocal, which leaves
/// the loops, put right by one Newton step: exactly rounded like the division, so that where shaders take its
/// whole part no pixel falls into another cell, in less time. The step fails where something is not finite;
/// there the product is the quotient.
Value* divide(Builder& ir, Value* a, Value* b) {
    const auto* known = llvm::dyn_cast<llvm::ConstantFP>(b);
    if (!isVarying(a) || isVarying(b) || (known && known->getValueAPF().getExactInverse(nullptr))) {
        unify(ir, a, b);
        return ir.CreateFDiv(a, b);
    }
    Value* reciprocal = spread(ir, ir.CreateFDiv(constant(ir, 1), b));
    Value* quotient = ir.CreateFMul(a, reciprocal);
    Value* rest = fma(ir, spread(ir, ir.CreateFNeg(b)), quotient, a);
    Value* exact = fma(ir, rest, reciprocal, quotient);
    return ir.CreateSelect(ir.CreateFCmpORD(exact, exact), exact, quotient);
}

/// A divisor that integer division does not fail for.
Value* safeDivisor(Builder& ir, Value* a, Value* b, bool isSigned) {
    Value* one = whole(b, 1);
    Value* fails = ir.CreateICmpEQ(b, whole(b, 0));
    if (isSigned) {
        Value* overflows = ir.CreateAnd(ir.CreateICmpEQ(a, whole(a, 0x80000000u)),
                                        ir.CreateICmpEQ(b, llvm::ConstantInt::getSigned(b->getType(), -1)));
        fails = ir.CreateOr(fails, overflows);
    }
    return ir.CreateSelect(fails, one, b);
}

Value* convert(Builder& ir, llvm::Instruction::CastOps cast, Value* value, llvm::Type* scalar) {
    return ir.CreateCast(cast, value, laneType(value, scalar));
}

/// By how far bits are moved: what is out of range is undefined in shaders but must not be in ours.
Value* shiftAmount(Builder& ir, Value* value) {
    return ir.CreateAnd(value, whole(value, 31));
}

Value* oneOf(Builder& ir, spv::Op op, Value* a) {
    switch (op) {
        case spv::OpFNegate:
            return ir.CreateFNeg(a);
        case spv::OpSNegate:
            return ir.CreateNeg(a);
        case spv::OpNot:
        case spv::OpLogicalNot:
            return ir.CreateNot(a);
        case spv::OpConvertFToS:
            return toSigned(ir, a);
        case spv::OpConvertFToU:
            return toUnsigned(ir, a);
        case spv::OpConvertSToF:
            return convert(ir, llvm::Instruction::SIToFP, a, ir.getFloatTy());
        case spv::OpConvertUToF:
            return convert(ir, llvm::Instruction::UIToFP, a, ir.getFloatTy());
        case spv::OpIsNan:
            return ir.CreateFCmpUNO(a, a);
        case spv::OpIsInf:
            return ir.CreateFCmpOEQ(absolute(ir, a), llvm::ConstantFP::getInfinity(a->getType()));
        case spv::OpBitReverse:
            return call(ir, llvm::Intrinsic::bitreverse, a);
        case spv::OpBitCount:
            return call(ir, llvm::Intrinsic::ctpop, a);
        default:
            return nullptr;
    }
}

Value* compare(Builder& ir, spv::Op op, Value* a, Value* b) {
    switch (op) {
        case spv::OpFOrdEqual:
            return ir.CreateFCmpOEQ(a, b);
        case spv::OpFUnordEqual:
            return ir.CreateFCmpUEQ(a, b);
        case spv::OpFOrdNotEqual:
            return ir.CreateFCmpONE(a, b);
        case spv::OpFUnordNotEqual:
            return ir.CreateFCmpUNE(a, b);
        case spv::OpFOrdLessThan:
            return ir.CreateFCmpOLT(a, b);
        case spv::OpFUnordLessThan:
            return ir.CreateFCmpULT(a, b);
        case spv::OpFOrdGreaterThan:
            return ir.CreateFCmpOGT(a, b);
        case spv::OpFUnordGreaterThan:
            return ir.CreateFCmpUGT(a, b);
        case spv::OpFOrdLessThanEqual:
            return ir.CreateFCmpOLE(a, b);
        case spv::OpFUnordLessThanEqual:
            return ir.CreateFCmpULE(a, b);
        case spv::OpFOrdGreaterThanEqual:
            return ir.CreateFCmpOGE(a, b);
        case spv::OpFUnordGreaterThanEqual:
            return ir.CreateFCmpUGE(a, b);
        case spv::OpIEqual:
        case spv::OpLogicalEqual:
            return ir.CreateICmpEQ(a, b);
        case spv::OpINotEqual:
        case spv::OpLogicalNotEqual:
            return ir.CreateICmpNE(a, b);
        case spv::OpSLessThan:
            return ir.CreateICmpSLT(a, b);
        case spv::OpSLessThanEqual:
            return ir.CreateICmpSLE(a, b);
        case spv::OpSGreaterThan:
            return ir.CreateICmpSGT(a, b);
        case spv::OpSGreaterThanEqual:
            return ir.CreateICmpSGE(a, b);
        case spv::OpULessThan:
            return ir.CreateICmpULT(a, b);
        case spv::OpULessThanEqual:
            return ir.CreateICmpULE(a, b);
        case spv::OpUGreaterThan:
            return ir.CreateICmpUGT(a, b);
        case spv::OpUGreaterThanEqual:
            return ir.CreateICmpUGE(a, b);
        default:
            return nullptr;
    }
}

Value* twoOf(Builder& ir, spv::Op op, Value* a, Value* b) {
    if (op == spv::OpFDiv) return divide(ir, a, b);
    if (op == spv::OpFMod || op == spv::OpFRem) {
        const ID rounding = op == spv::OpFMod ? llvm::Intrinsic::floor : llvm::Intrinsic::trunc;
        Value* quotient = call(ir, rounding, divide(ir, a, b));
        unify(ir, b, quotient);
        unify(ir, a, quotient);
        return ir.CreateFSub(a, ir.CreateFMul(b, quotient));
    }
    unify(ir, a, b);
    if (Value* result = compare(ir, op, a, b)) return result;
    switch (op) {
        case spv::OpFAdd:
            return ir.CreateFAdd(a, b);
        case spv::OpFSub:
            return ir.CreateFSub(a, b);
        case spv::OpFMul:
        case spv::OpVectorTimesScalar:
        case spv::OpMatrixTimesScalar:
            return ir.CreateFMul(a, b);
        case spv::OpIAdd:
            return ir.CreateAdd(a, b);
        case spv::OpISub:
            return ir.CreateSub(a, b);
        case spv::OpIMul:
            return ir.CreateMul(a, b);
        case spv::OpUDiv:
            return ir.CreateUDiv(a, safeDivisor(ir, a, b, false));
        case spv::OpUMod:
            return ir.CreateURem(a, safeDivisor(ir, a, b, false));
        case spv::OpSDiv:
            return ir.CreateSDiv(a, safeDivisor(ir, a, b, true));
        case spv::OpSRem:
            return ir.CreateSRem(a, safeDivisor(ir, a, b, true));
        case spv::OpSMod: {
            // The remainder takes the divisor's sign.
            Value* divisor = safeDivisor(ir, a, b, true);
            Value* rest = ir.CreateSRem(a, divisor);
            Value* zero = whole(a, 0);
            Value* wrong = ir.CreateAnd(ir.CreateICmpNE(rest, zero),
                                        ir.CreateICmpSLT(ir.CreateXor(rest, divisor), zero));
            return ir.CreateSelect(wrong, ir.CreateAdd(rest, divisor), rest);
        }
        case spv::OpShiftLeftLogical:
            return ir.CreateShl(a, shiftAmount(ir, b));
        case spv::OpShiftRightLogical:
            return ir.CreateLShr(a, shiftAmount(ir, b));
        case spv::OpShiftRightArithmetic:
            return ir.CreateAShr(a, shiftAmount(ir, b));
        case spv::OpBitwiseAnd:
        case spv::OpLogicalAnd:
            return ir.CreateAnd(a, b);
        case spv::OpBitwiseOr:
        case spv::OpLogicalOr:
            return ir.CreateOr(a, b);
        case spv::OpBitwiseXor:
            return ir.CreateXor(a, b);
        default:
            return nullptr;
    }
}

/// Bits [offset, offset + count) of a word, as a mask at its right end.
Value* fieldMask(Builder& ir, Value* count) {
    Value* ones = llvm::Constant::getAllOnesValue(count->getType());
    Value* zero = llvm::Constant::getNullValue(count->getType());
    Value* width = whole(count, 32);
    Value* mask = ir.CreateLShr(ones, shiftAmount(ir, ir.CreateSub(width, count)));
    return ir.CreateSelect(ir.CreateICmpEQ(count, zero), zero, mask);
}

Value* bitField(Builder& ir, spv::Op op, std::vector<Value*> operands) {
    for (Value*& a : operands) {
        for (Value*& b : operands) unify(ir, a, b);
    }
    Value* base = operands[0];
    Value* offset = shiftAmount(ir, operands[operands.size() - 2]);
    Value* mask = fieldMask(ir, operands.back());
    if (op == spv::OpBitFieldInsert) {
        Value* place = ir.CreateShl(mask, offset);
        Value* inserted = ir.CreateAnd(ir.CreateShl(operands[1], offset), place);
        return ir.CreateOr(ir.CreateAnd(base, ir.CreateNot(place)), inserted);
    }
    Value* field = ir.CreateAnd(ir.CreateLShr(base, offset), mask);
    if (op == spv::OpBitFieldUExtract) return field;
    // The field's highest bit is its sign.
    Value* sign = ir.CreateXor(mask, ir.CreateLShr(mask, whole(mask, 1)));
    return ir.CreateSub(ir.CreateXor(field, sign), sign);
}

// --- Vectors and matrices, of floats. ---

Value* multiply(Builder& ir, Value* a, Value* b) {
    return twoOf(ir, spv::OpFMul, a, b);
}
Value* add(Builder& ir, Value* a, Value* b) {
    return twoOf(ir, spv::OpFAdd, a, b);
}
Value* subtract(Builder& ir, Value* a, Value* b) {
    return twoOf(ir, spv::OpFSub, a, b);
}

Value* dot(Builder& ir, const Values& a, const Values& b) {
    Value* sum = multiply(ir, a[0], b[0]);
    for (std::size_t i = 1; i < a.size(); ++i) sum = add(ir, sum, multiply(ir, a[i], b[i]));
    return sum;
}

Value* length(Builder& ir, const Values& a) {
    if (a.size() == 1) return absolute(ir, a[0]);
    return squareRoot(ir, dot(ir, a, a));
}

Values scaled(Builder& ir, const Values& a, Value* by) {
    Values result;
    for (Value* component : a) result.push_back(multiply(ir, component, by));
    return result;
}

/// a + b·factor.
Values sum(Builder& ir, const Values& a, const Values& b, Value* factor) {
    Values result;
    for (std::size_t i = 0; i < a.size(); ++i) result.push_back(add(ir, a[i], multiply(ir, b[i], factor)));
    return result;
}

Values columnOf(const Values& matrix, std::size_t column, std::size_t rows) {
    return Values(matrix.begin() + column * rows, matrix.begin() + (column + 1) * rows);
}

Values rowOf(const Values& matrix, std::size_t row, std::size_t rows) {
    Values result;
    for (std::size_t i = row; i < matrix.size(); i += rows) result.push_back(matrix[i]);
    return result;
}

/// Of a square matrix of columns, without a row and a column.
Values minorOf(const Values& matrix, std::size_t side, std::size_t row, std::size_t column) {
    Values result;
    for (std::size_t i = 0; i < matrix.size(); ++i) {
        if (i / side != column && i % side != row) result.push_back(matrix[i]);
    }
    return result;
}

Value* determinant(Builder& ir, const Values& matrix, std::size_t side) {
    if (side == 1) return matrix[0];
    Value* result = nullptr;
    for (std::size_t column = 0; column < side; ++column) {
        Value* part =
            multiply(ir, matrix[column * side], determinant(ir, minorOf(matrix, side, 0, column), side - 1));
        result = !result ? part : column % 2 ? subtract(ir, result, part) : add(ir, result, part);
    }
    return result;
}

Values inverse(Builder& ir, const Values& matrix, std::size_t side) {
    Value* factor = divide(ir, constant(ir, 1), determinant(ir, matrix, side));
    Values result;
    for (std::size_t column = 0; column < side; ++column) {
        for (std::size_t row = 0; row < side; ++row) {
            Value* cofactor = determinant(ir, minorOf(matrix, side, column, row), side - 1);
            if ((row + column) % 2) cofactor = ir.CreateFNeg(cofactor);
            result.push_back(multiply(ir, cofactor, factor));
        }
    }
    return result;
}

Values refract(Builder& ir, const Values& incident, const Values& normal, Value* eta) {
    Value* cosine = dot(ir, normal, incident);
    Value* k = subtract(
        ir, constant(ir, 1),
        multiply(ir, multiply(ir, eta, eta), subtract(ir, constant(ir, 1), multiply(ir, cosine, cosine))));
    Value* isTotal = compare(ir, spv::OpFOrdLessThan, k, llvm::Constant::getNullValue(k->getType()));
    Value* along = add(ir, multiply(ir, eta, cosine), squareRoot(ir, k));
    Values result = sum(ir, scaled(ir, incident, eta), normal, ir.CreateFNeg(along));
    for (Value*& component : result) component = choose(ir, isTotal, constant(ir, 0), component);
    return result;
}

/// Fraction in [0.5, 1) with the sign, and exponent.
std::pair<Value*, Value*> significand(Builder& ir, Value* value) {
    // What is subnormal is made normal first.
    Value* scaleUp = ir.CreateFMul(value, number(value, 0x1p32));
    Value* isSmall = ir.CreateFCmpOLT(absolute(ir, value), number(value, 0x1p-126));
    Value* word = toBits(ir, ir.CreateSelect(isSmall, scaleUp, value));
    Value* field = ir.CreateAnd(ir.CreateLShr(word, whole(word, 23)), whole(word, 0xff));
    Value* exponent = ir.CreateSub(field, ir.CreateSelect(isSmall, whole(word, 126 + 32), whole(word, 126)));
    Value* fraction =
        fromBits(ir, ir.CreateOr(ir.CreateAnd(word, whole(word, 0x807fffff)), whole(word, 0x3f000000)));
    Value* isOrdinary = ir.CreateAnd(ir.CreateFCmpUNE(value, llvm::Constant::getNullValue(value->getType())),
                                     ir.CreateICmpNE(field, whole(word, 0xff)));
    return {ir.CreateSelect(isOrdinary, fraction, value),
            ir.CreateSelect(isOrdinary, exponent, whole(word, 0))};
}

/// Functions that do not work component by component; empty for those that do.
Values vectorFunction(Builder& ir, unsigned function, const std::vector<Values>& operands) {
    switch (function) {
        case GLSLstd450Length:
            return {length(ir, operands[0])};
        case GLSLstd450Distance: {
            Values apart;
            for (std::size_t i = 0; i < operands[0].size(); ++i) {
                apart.push_back(subtract(ir, operands[0][i], operands[1][i]));
            }
            return {length(ir, apart)};
        }
        case GLSLstd450Normalize: {
            const Values& a = operands[0];
            return scaled(ir, a, divide(ir, constant(ir, 1), squareRoot(ir, dot(ir, a, a))));
        }
        case GLSLstd450Cross: {
            const Values &a = operands[0], &b = operands[1];
            Values result;
            for (int i = 0; i < 3; ++i) {
                const int j = (i + 1) % 3, k = (i + 2) % 3;
                result.push_back(subtract(ir, multiply(ir, a[j], b[k]), multiply(ir, a[k], b[j])));
            }
            return result;
        }
        case GLSLstd450Reflect: {
            Value* twice = multiply(ir, dot(ir, operands[1], operands[0]), constant(ir, -2));
            return sum(ir, operands[0], operands[1], twice);
        }
        case GLSLstd450Refract:
            return refract(ir, operands[0], operands[1], operands[2][0]);
        case GLSLstd450FaceForward: {
            Value* facing = dot(ir, operands[2], operands[1]);
            Value* isFront =
                compare(ir, spv::OpFOrdLessThan, facing, llvm::Constant::getNullValue(facing->getType()));
            Values result;
            for (Value* component : operands[0]) {
                result.push_back(choose(ir, isFront, component, ir.CreateFNeg(component)));
            }
            return result;
        }
        case GLSLstd450Determinant:
        case GLSLstd450MatrixInverse: {
            const std::size_t side = operands[0].size() == 4 ? 2 : operands[0].size() == 9 ? 3 : 4;
            if (function == GLSLstd450MatrixInverse) return inverse(ir, operands[0], side);
            return {determinant(ir, operands[0], side)};
        }
        case GLSLstd450ModfStruct:
        case GLSLstd450FrexpStruct: {
            Values first, second;
            for (Value* component : operands[0]) {
                if (function == GLSLstd450FrexpStruct) {
                    const auto [fraction, exponent] = significand(ir, component);
                    first.push_back(fraction);
                    second.push_back(exponent);
                } else {
                    Value* cut = call(ir, llvm::Intrinsic::trunc, component);
                    first.push_back(ir.CreateFSub(component, cut));
                    second.push_back(cut);
                }
            }
            first.insert(first.end(), second.begin(), second.end());
            return first;
        }
        default:
            return {};
    }
}

[[noreturn]] void refuse(const Operation& operation) {
    if (operation.op == spv::OpExtInst) {
        throw KernelError(fmt::format("a standard function that is not supported: {}", operation[1]));
    }
    throw KernelError(fmt::format("an instruction that is not supported: {}", int(operation.op)));
}

}  // namespace

bool mixesComponents(const Operation& operation) {
    switch (operation.op) {
        case spv::OpMatrixTimesMatrix:
        case spv::OpMatrixTimesVector:
        case spv::OpVectorTimesMatrix:
            return true;
        case spv::OpExtInst:
            switch (operation[1]) {
                case GLSLstd450Normalize:
                case GLSLstd450Cross:
                case GLSLstd450Reflect:
                case GLSLstd450Refract:
                case GLSLstd450FaceForward:
                case GLSLstd450MatrixInverse:
                    return true;
                default:
                    return false;
            }
        default:
            return false;
    }
}

llvm::Type* scalarType(Builder& ir, const Type& scalar) {
    switch (scalar.kind) {
        case Type::Kind::boolean:
            return ir.getInt1Ty();
        case Type::Kind::integer:
            return ir.getInt32Ty();
        case Type::Kind::floating:
            return ir.getFloatTy();
        default:
            throw KernelError("a component that is no number");
    }
}

Value* choose(Builder& ir, Value* condition, Value* a, Value* b) {
    unify(ir, a, b);
    if (isVarying(condition)) {
        a = spread(ir, a);
        b = spread(ir, b);
    }
    return ir.CreateSelect(condition, a, b);
}

Values arithmetic(Builder& ir, const Program& program, const Operation& operation,
                  const std::vector<Values>& operands) {
    const std::size_t count = program.components(operation.result);
    const auto of = [&](std::size_t operand, std::size_t component) {
        const Values& values = operands.at(operand);
        return values.size() == 1 ? values[0] : values.at(component);
    };
    switch (operation.op) {
        case spv::OpDot:
            return {dot(ir, operands.at(0), operands.at(1))};
        case spv::OpAny:
        case spv::OpAll: {
            Value* result = operands.at(0).at(0);
            const spv::Op op = operation.op == spv::OpAny ? spv::OpLogicalOr : spv::OpLogicalAnd;
            for (std::size_t i = 1; i < operands[0].size(); ++i)
                result = twoOf(ir, op, result, operands[0][i]);
            return {result};
        }
        case spv::OpMatrixTimesVector: {
            Values result;
            for (std::size_t row = 0; row < count; ++row) {
                result.push_back(dot(ir, rowOf(operands[0], row, count), operands[1]));
            }
            return result;
        }
        case spv::OpVectorTimesMatrix: {
            Values result;
            for (std::size_t column = 0; column < count; ++column) {
                result.push_back(dot(ir, operands[0], columnOf(operands[1], column, operands[0].size())));
            }
            return result;
        }
        case spv::OpMatrixTimesMatrix: {
            const std::size_t inner = program.module.type(program.typeOf(operation[0])).count;
            const std::size_t rows = operands[0].size() / inner;
            Values result;
            for (std::size_t i = 0; i < count; ++i) {
                result.push_back(
                    dot(ir, rowOf(operands[0], i % rows, rows), columnOf(operands[1], i / rows, inner)));
            }
            return result;
        }
        case spv::OpOuterProduct: {
            Values result;
            for (Value* b : operands[1]) {
                const Values column = scaled(ir, operands[0], b);
                result.insert(result.end(), column.begin(), column.end());
            }
            return result;
        }
        case spv::OpVectorExtractDynamic: {
            Value* result = operands[0][0];
            for (std::size_t i = 1; i < operands[0].size(); ++i) {
                Value* isThis = twoOf(ir, spv::OpIEqual, operands[1][0], ir.getInt32(std::uint32_t(i)));
                result = choose(ir, isThis, operands[0][i], result);
            }
            return {result};
        }
        case spv::OpVectorInsertDynamic: {
            Values result = operands[0];
            for (std::size_t i = 0; i < count; ++i) {
                Value* isThis = twoOf(ir, spv::OpIEqual, operands[2][0], ir.getInt32(std::uint32_t(i)));
                result[i] = choose(ir, isThis, operands[1][0], result[i]);
            }
            return result;
        }
        case spv::OpExtInst: {
            if (Values result = vectorFunction(ir, operation[1], operands); !result.empty()) return result;
            Values result;
            if (const std::size_t taken = operands.at(0).size(); taken != count) {
                // Those that pack take all components at once, those that unpack give them.
                Value* packed = standardFunction(ir, operation[1], operands[0]);
                if (!packed || (taken != 1 && count != 1)) refuse(operation);
                if (count == 1) return {packed};
                for (std::size_t i = 0; i < count; ++i) {
                    result.push_back(ir.CreateExtractValue(packed, unsigned(i)));
                }
                return result;
            }
            for (std::size_t i = 0; i < count; ++i) {
                Values components;
                for (std::size_t n = 0; n < operands.size(); ++n) components.push_back(of(n, i));
                result.push_back(standardFunction(ir, operation[1], components));
                if (!result.back()) refuse(operation);
            }
            return result;
        }
        default:
            break;
    }
    Values result;
    for (std::size_t i = 0; i < count; ++i) {
        Value* value = nullptr;
        if (operation.op == spv::OpSelect) {
            value = choose(ir, of(0, i), of(1, i), of(2, i));
        } else if (operation.op == spv::OpBitcast) {
            // Components of one size only: there are no others.
            value = convert(ir, llvm::Instruction::BitCast, of(0, i),
                            scalarType(ir, program.module.type(program.module.scalar(operation.type))));
        } else if (operation.op == spv::OpBitFieldInsert || operation.op == spv::OpBitFieldSExtract ||
                   operation.op == spv::OpBitFieldUExtract) {
            Values components;
            for (std::size_t n = 0; n < operands.size(); ++n) components.push_back(of(n, i));
            value = bitField(ir, operation.op, components);
        } else if (operands.size() == 1) {
            value = oneOf(ir, operation.op, of(0, i));
        } else if (operands.size() == 2) {
            value = twoOf(ir, operation.op, of(0, i), of(1, i));
        }
        if (!value) refuse(operation);
        result.push_back(value);
    }
    return result;
}

}  // namespace qv::native
