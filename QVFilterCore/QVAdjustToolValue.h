#pragma once

#include "QVFilterCore/PGCurvesToolValue.h"
#include "QVFilterCore/QVAdjustValue.h"

namespace qv {

/// Settings of the adjust group: the simple adjustments and the curves. None changes the picture at first.
class QVAdjustToolValue {
  public:
    /// Settings that change nothing.
    static QVAdjustToolValue defaultValue() { return {}; }

    /// Warmth, brightness and sharpening.
    QVAdjustValue& adjustValue() { return adjustValue_; }
    const QVAdjustValue& adjustValue() const { return adjustValue_; }
    /// The curves.
    const PGCurvesToolValue& curvesToolValue() const { return curvesToolValue_; }
    void setCurvesToolValue(const PGCurvesToolValue& value) { curvesToolValue_ = value; }

  private:
    QVAdjustValue adjustValue_;
    PGCurvesToolValue curvesToolValue_;
};

}  // namespace qv
