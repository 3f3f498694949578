#pragma once

namespace qv {

/// x²(3 − 2x) of x clamped to 0..1; 0 for what is not a number.
constexpr double smoothStep(double x) {
    return x > 0 ? (x < 1 ? x * x * (3 - 2 * x) : 1.0) : 0.0;
}

}  // namespace qv
