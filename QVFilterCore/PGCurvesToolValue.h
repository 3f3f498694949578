#pragma once

#include <array>
#include <cstddef>

namespace qv {

/// A tone curve through five points: blacks, shadows, midtones, highlights and whites at 0, 25, 50, 75 and
/// 100 % of the input. Levels are 0..100 % of the output; the curve that it starts with is straight.
///
/// Between the points it is the monotone cubic interpolant of Fritsch and Carlson ("Monotone Piecewise Cubic
/// Interpolation", 1980): it never leaves the range of the two points it lies between.
class PGCurve {
  public:
    /// Number of points.
    static constexpr std::size_t kPoints = 5;

    /// The output at each point, percent.
    double blacksLevel() const { return levels_[0]; }
    void setBlacksLevel(double level) { levels_[0] = level; }
    double shadowsLevel() const { return levels_[1]; }
    void setShadowsLevel(double level) { levels_[1] = level; }
    double midtonesLevel() const { return levels_[2]; }
    void setMidtonesLevel(double level) { levels_[2] = level; }
    double highlightsLevel() const { return levels_[3]; }
    void setHighlightsLevel(double level) { levels_[3] = level; }
    double whitesLevel() const { return levels_[4]; }
    void setWhitesLevel(double level) { levels_[4] = level; }

    /// All of them, from blacks to whites.
    const std::array<double, kPoints>& levels() const { return levels_; }
    /// The output 0..1 for an input 0..1; inputs are clamped, and so are levels outside 0..100.
    double valueAt(double input) const;

    bool operator==(const PGCurve&) const = default;

  private:
    std::array<double, kPoints> levels_ = {0, 25, 50, 75, 100};
};

/// Curves of the adjust group.
class PGCurvesToolValue {
  public:
    /// Straight curves.
    static PGCurvesToolValue defaultValue() { return {}; }

    /// The curve of the luma.
    PGCurve& luminanceCurve() { return luminanceCurve_; }
    const PGCurve& luminanceCurve() const { return luminanceCurve_; }

    bool operator==(const PGCurvesToolValue&) const = default;

  private:
    PGCurve luminanceCurve_;
};

}  // namespace qv
