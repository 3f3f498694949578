#pragma once

#include "QVFilterCore/QV_CubicBezier.h"

namespace qv {

/// An ease from 0 to 1 by the two control points of its curve.
struct EaseCurve {
    /// As in `QV_CubicBezier`.
    double x1, y1, x2, y2;
    /// The eased value, 0..1, at a time of 0..1.
    double operator()(double time) const { return QV_CubicBezier(time, x1, y1, x2, y2); }
};

inline constexpr EaseCurve kEaseIn{1, 0, 1, 1};   ///< from rest, ever faster
inline constexpr EaseCurve kEaseOut{0, 0, 0, 1};  ///< the reverse: fast at once, comes to rest

/// A transition eased in two halves, one up to the cut at progress 0.5 and one from it on. Progress 0.5
/// itself belongs to the second half.
struct HalvesEasing {
    /// Of each half.
    EaseCurve first = kEaseIn, second = kEaseOut;

    /// 0 to 1 in each half.
    double half(float progress) const {
        const double time = 2.0 * double(progress);
        return progress < 0.5f ? first(time) : second(time - 1);
    }
    /// 0 to 0.5, then 0.5 to 1.
    double halfScaled(float progress) const { return (progress < 0.5f ? 0.0 : 0.5) + 0.5 * half(progress); }
    /// 0 to 1, then back to 0.
    double peak(float progress) const { return progress < 0.5f ? half(progress) : 1 - half(progress); }
};

}  // namespace qv
