#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"

#include <initializer_list>
#include <limits>

// The polynomials are minimax, found by the exchange algorithm for the relative error of the whole function;
// their coefficients were rounded one after the other, the rest being fitted again. Every product that is
// added to something is written as one operation, so that no instruction set has a choice.

namespace qv::native {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kLog2E = 1.44269504088896340736;
/// A constant as a sum of floats: k times the first is subtracted without an error.
constexpr float kPiParts[] = {3.14159274f, -8.74227766e-08f, -3.43024902e-15f};
constexpr float kLn2Parts[] = {0.693147182f, -1.90465421e-09f};
/// Added to a number below 2²², this leaves it rounded to a whole one in the lowest bits.
constexpr double kRounder = 12582912;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// c₀ + c₁·x + c₂·x² + …
Value* polynomial(Builder& ir, Value* x, std::initializer_list<float> coefficients) {
    const float* c = coefficients.end();
    Value* sum = number(x, *--c);
    while (c != coefficients.begin()) sum = fma(ir, sum, x, number(x, *--c));
    return sum;
}

/// Within low..high; not a number stays.
Value* limit(Builder& ir, Value* x, double low, double high) {
    Value* const bottom = number(x, low);
    x = ir.CreateSelect(ir.CreateFCmpOLT(x, bottom), bottom, x);
    Value* const top = number(x, high);
    return ir.CreateSelect(ir.CreateFCmpOGT(x, top), top, x);
}

Value* copySign(Builder& ir, Value* size, Value* sign) {
    return ir.CreateBinaryIntrinsic(llvm::Intrinsic::copysign, size, sign);
}

/// The sine of x + shift·π, for a shift of 0 or ½.
Value* shiftedSine(Builder& ir, Value* x, double shift) {
    Value* const rounder = number(x, kRounder);
    Value* const turns = number(x, 1 / kPi);
    // The number of half turns; its lowest bit is the sign.
    Value* const rounded =
        shift == 0 ? fma(ir, x, turns, rounder) : ir.CreateFAdd(fma(ir, x, turns, number(x, shift)), rounder);
    Value* const halfTurns = ir.CreateFSub(ir.CreateFSub(rounded, rounder), number(x, shift));
    Value* r = x;
    for (float part : kPiParts) r = fma(ir, halfTurns, number(x, -part), r);
    r = limit(ir, r, -1.6, 1.6);  // where x is too large for its turns to be counted
    Value* const z = ir.CreateFMul(r, r);
    Value* const p = polynomial(ir, z, {-0.166666597f, 0.00833306927f, -0.000198097769f, 2.60609568e-06f});
    Value* const size = fma(ir, ir.CreateFMul(z, r), p, r);
    Value* const sign = ir.CreateShl(toBits(ir, rounded), 31);
    return fromBits(ir, ir.CreateXor(toBits(ir, size), sign));
}

/// 2 to the power of the whole number that `rounded` holds, kRounder included: −127 (gives 0) to 128
/// (infinite).
Value* powerOfTwo(Builder& ir, Value* rounded) {
    Value* const bits = toBits(ir, rounded);
    return fromBits(ir, ir.CreateShl(ir.CreateAdd(bits, whole(bits, 127)), 23));
}

/// 2^f for f in −½..½.
Value* fractionalPowerOfTwo(Builder& ir, Value* f) {
    return fma(ir, f,
               polynomial(ir, f,
                          {0.693147182f, 0.240226507f, 0.0555036366f, 0.00961791072f, 0.00133891485f,
                           0.000155280097f}),
               number(f, 1));
}

/// eˣ as scale·(1 + fraction).
struct Exponential {
    Value *scale, *fraction;
};
Exponential splitExponential(Builder& ir, Value* x) {
    Value* const rounder = number(x, kRounder);
    Value* const rounded = fma(ir, x, number(x, kLog2E), rounder);
    Value* const k = ir.CreateFSub(rounded, rounder);
    Value* r = x;
    for (float part : kLn2Parts) r = fma(ir, k, number(x, -part), r);
    Value* const p =
        polynomial(ir, r, {0.49999997f, 0.166665494f, 0.0416673049f, 0.00836798456f, 0.00138960965f});
    return {powerOfTwo(ir, rounded), fma(ir, ir.CreateFMul(r, r), p, r)};
}

/// eˣ − 1 for 0 ≤ x; 88 stands for what is above.
Value* exponentialLessOne(Builder& ir, Value* x) {
    const auto [scale, fraction] = splitExponential(ir, limit(ir, x, 0, 88));
    return fma(ir, scale, fraction, ir.CreateFSub(scale, number(x, 1)));
}

/// ln(1 + f) for f in √½ − 1 .. √2 − 1.
Value* logarithmNearOne(Builder& ir, Value* f) {
    Value* const p = polynomial(ir, f,
                                {0.333333135f, -0.250000149f, 0.200020611f, -0.166674808f, 0.142199367f,
                                 -0.124162458f, 0.118980125f, -0.116054296f, 0.0662731752f});
    return fma(ir, ir.CreateFMul(f, f), fma(ir, f, p, number(f, -0.5)), f);
}

/// A positive number as 2^exponent·(1 + fraction), the fraction in √½ − 1 .. √2 − 1.
struct Logarithm {
    Value *exponent, *fraction;
};
Logarithm splitLogarithm(Builder& ir, Value* x) {
    Value* const bits = toBits(ir, x);
    Value* const exponent = ir.CreateAShr(ir.CreateSub(bits, whole(bits, 0x3F3504F3)), 23);
    Value* const mantissa = fromBits(ir, ir.CreateSub(bits, ir.CreateShl(exponent, 23)));
    return {ir.CreateSIToFP(exponent, x->getType()), ir.CreateFSub(mantissa, number(x, 1))};
}

/// k·ln 2 + rest.
Value* withPowerOfTwo(Builder& ir, Value* k, Value* rest) {
    rest = fma(ir, k, number(k, kLn2Parts[1]), rest);
    return fma(ir, k, number(k, kLn2Parts[0]), rest);
}

/// `result` where x is positive, `atZero` at 0; not a number elsewhere.
Value* wherePositive(Builder& ir, Value* x, Value* result, double atZero) {
    Value* const zero = number(x, 0);
    Value* const other = ir.CreateSelect(ir.CreateFCmpOEQ(x, zero), number(x, atZero), number(x, kNaN));
    return ir.CreateSelect(ir.CreateFCmpOGT(x, zero), result, other);
}

Value* logarithmDomain(Builder& ir, Value* x, Value* result) {
    result = ir.CreateSelect(ir.CreateFCmpOEQ(x, number(x, kInfinity)), x, result);
    return wherePositive(ir, x, result, -kInfinity);
}

/// ln(1 + x) for 0 ≤ x.
Value* logarithmOfOneMore(Builder& ir, Value* x) {
    Value* const one = number(x, 1);
    Value* const sum = ir.CreateFAdd(x, one);
    const auto [k, f] = splitLogarithm(ir, sum);
    // What the sum has lost of x.
    Value* const lost = ir.CreateFDiv(ir.CreateFSub(x, ir.CreateFSub(sum, one)), sum);
    return withPowerOfTwo(ir, k, ir.CreateFAdd(logarithmNearOne(ir, f), lost));
}

/// arctan t for 0 ≤ t ≤ 1.
Value* arcTangentBelowOne(Builder& ir, Value* t) {
    Value* const z = ir.CreateFMul(t, t);
    Value* const p = polynomial(ir, z,
                                {-0.333331525f, 0.199937671f, -0.14211002f, 0.106657691f, -0.0755166039f,
                                 0.0432047322f, -0.0163631923f, 0.0029194227f});
    return fma(ir, ir.CreateFMul(z, t), p, t);
}

/// What arcsine and arccosine share: arcsin of |x| up to ½, else of √((1 − |x|) / 2), which is half of arccos
/// |x|.
struct ArcSine {
    Value *isLarge, *angle;
};
ArcSine splitArcSine(Builder& ir, Value* x) {
    Value* const size = absolute(ir, x);
    Value* const isLarge = ir.CreateFCmpOGT(size, number(x, 0.5));
    Value* const half = ir.CreateFMul(ir.CreateFSub(number(x, 1), size), number(x, 0.5));
    Value* const z = ir.CreateSelect(isLarge, half, ir.CreateFMul(x, x));
    Value* const s = ir.CreateSelect(isLarge, squareRoot(ir, half), size);
    Value* const p =
        polynomial(ir, z, {0.166667521f, 0.0749530941f, 0.0454691499f, 0.0241847802f, 0.0421582982f});
    return {isLarge, fma(ir, ir.CreateFMul(z, s), p, s)};
}

}  // namespace

Value* fma(Builder& ir, Value* a, Value* b, Value* c) {
    return ir.CreateIntrinsic(llvm::Intrinsic::fma, {a->getType()}, {a, b, c});
}

Value* absolute(Builder& ir, Value* value) {
    return ir.CreateUnaryIntrinsic(llvm::Intrinsic::fabs, value);
}

Value* squareRoot(Builder& ir, Value* value) {
    return ir.CreateUnaryIntrinsic(llvm::Intrinsic::sqrt, value);
}

Value* sine(Builder& ir, Value* x) {
    return shiftedSine(ir, x, 0);
}

Value* cosine(Builder& ir, Value* x) {
    return shiftedSine(ir, x, 0.5);
}

Value* tangent(Builder& ir, Value* x) {
    return ir.CreateFDiv(sine(ir, x), cosine(ir, x));
}

Value* arcSine(Builder& ir, Value* x) {
    const auto [isLarge, angle] = splitArcSine(ir, x);
    Value* const large = fma(ir, angle, number(x, -2), number(x, kPi / 2));
    return copySign(ir, ir.CreateSelect(isLarge, large, angle), x);
}

Value* arcCosine(Builder& ir, Value* x) {
    const auto [isLarge, angle] = splitArcSine(ir, x);
    Value* const twice = ir.CreateFMul(angle, number(x, 2));
    Value* const large =
        ir.CreateSelect(ir.CreateFCmpOLT(x, number(x, 0)), ir.CreateFSub(number(x, kPi), twice), twice);
    return ir.CreateSelect(isLarge, large, ir.CreateFSub(number(x, kPi / 2), copySign(ir, angle, x)));
}

Value* arcTangent(Builder& ir, Value* y, Value* x) {
    Value *const width = absolute(ir, x), *const height = absolute(ir, y);
    Value* const isSteep = ir.CreateFCmpOGT(height, width);
    Value* const large = ir.CreateSelect(isSteep, height, width);
    Value* const small = ir.CreateSelect(isSteep, width, height);
    Value* const zero = number(x, 0);
    Value* const t = ir.CreateSelect(ir.CreateFCmpOEQ(large, zero), zero, ir.CreateFDiv(small, large));
    Value* angle = arcTangentBelowOne(ir, t);
    angle = ir.CreateSelect(isSteep, ir.CreateFSub(number(x, kPi / 2), angle), angle);
    angle = ir.CreateSelect(ir.CreateFCmpOLT(x, zero), ir.CreateFSub(number(x, kPi), angle), angle);
    return copySign(ir, angle, y);
}

Value* exponential(Builder& ir, Value* x) {
    const auto [scale, fraction] = splitExponential(ir, limit(ir, x, -88, 89));
    return ir.CreateFMul(ir.CreateFAdd(fraction, number(x, 1)), scale);
}

Value* exponential2(Builder& ir, Value* x) {
    Value* const rounder = number(x, kRounder);
    x = limit(ir, x, -127, 128);
    Value* const rounded = ir.CreateFAdd(x, rounder);
    Value* const f = ir.CreateFSub(x, ir.CreateFSub(rounded, rounder));
    return ir.CreateFMul(fractionalPowerOfTwo(ir, f), powerOfTwo(ir, rounded));
}

Value* logarithm(Builder& ir, Value* x) {
    const auto [k, f] = splitLogarithm(ir, x);
    return logarithmDomain(ir, x, withPowerOfTwo(ir, k, logarithmNearOne(ir, f)));
}

Value* logarithm2(Builder& ir, Value* x) {
    const auto [k, f] = splitLogarithm(ir, x);
    return logarithmDomain(ir, x, fma(ir, logarithmNearOne(ir, f), number(x, kLog2E), k));
}

Value* power(Builder& ir, Value* x, Value* y) {
    const auto [k, f] = splitLogarithm(ir, x);
    Value* const l = ir.CreateFMul(logarithmNearOne(ir, f), number(x, kLog2E));
    // y·(k + l) is never rounded as a whole, so the error does not grow with it.
    Value* const product = limit(ir, fma(ir, y, k, ir.CreateFMul(y, l)), -127, 128);
    Value* const rounder = number(x, kRounder);
    Value* const rounded = ir.CreateFAdd(product, rounder);
    Value* const n = ir.CreateFSub(rounded, rounder);
    Value* const rest = limit(ir, fma(ir, y, l, fma(ir, y, k, ir.CreateFNeg(n))), -1, 1);
    Value* const result = ir.CreateFMul(fractionalPowerOfTwo(ir, rest), powerOfTwo(ir, rounded));
    return wherePositive(ir, x, result, 0);
}

Value* hyperbolicSine(Builder& ir, Value* x) {
    Value* const more = exponentialLessOne(ir, absolute(ir, x));  // (eˣ − e⁻ˣ) / 2 = (m + m / (m + 1)) / 2
    Value* const sum = ir.CreateFAdd(more, ir.CreateFDiv(more, ir.CreateFAdd(more, number(x, 1))));
    return copySign(ir, ir.CreateFMul(sum, number(x, 0.5)), x);
}

Value* hyperbolicCosine(Builder& ir, Value* x) {
    Value* const e = exponential(ir, absolute(ir, x));
    return ir.CreateFMul(ir.CreateFAdd(e, ir.CreateFDiv(number(x, 1), e)), number(x, 0.5));
}

Value* hyperbolicTangent(Builder& ir, Value* x) {
    Value* const twice = ir.CreateFMul(absolute(ir, x), number(x, 2));
    Value* const more = exponentialLessOne(ir, twice);
    return copySign(ir, ir.CreateFDiv(more, ir.CreateFAdd(more, number(x, 2))), x);
}

Value* areaSine(Builder& ir, Value* x) {
    Value *const size = absolute(ir, x), *const one = number(x, 1), *const square = ir.CreateFMul(x, x);
    Value* const root = squareRoot(ir, ir.CreateFAdd(square, one));
    Value* const rest = ir.CreateFDiv(square, ir.CreateFAdd(root, one));
    return copySign(ir, logarithmOfOneMore(ir, ir.CreateFAdd(size, rest)), x);
}

Value* areaCosine(Builder& ir, Value* x) {
    Value* const more = ir.CreateFSub(x, number(x, 1));
    Value* const root = squareRoot(ir, fma(ir, more, more, ir.CreateFMul(more, number(x, 2))));
    return logarithmOfOneMore(ir, ir.CreateFAdd(more, root));
}

Value* areaTangent(Builder& ir, Value* x) {
    Value *const size = absolute(ir, x), *const one = number(x, 1);
    Value* const ratio = ir.CreateFDiv(ir.CreateFMul(size, number(x, 2)), ir.CreateFSub(one, size));
    return copySign(ir, ir.CreateFMul(logarithmOfOneMore(ir, ratio), number(x, 0.5)), x);
}

}  // namespace qv::native
