#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVFlashWarpMTIFilterClass;

/// Light through moving glass: the picture flows in waves, and its brightness flickers.
class QVFlashWarpMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVFlashWarpMTIFilter(const QVFilterClass& filterClass = QVFlashWarpMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Seconds; the same time gives the same waves.
    double time() const { return time_; }
    void setTime(double seconds) { time_ = seconds; }

    /// "iTime" (that is `time`).
    MTIParameters parameters() const override;

  private:
    double time_ = 0;
};

}  // namespace qv
