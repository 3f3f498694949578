#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVScanTransitionMTIFilterClass;

/// A bright line scans the picture and leaves the incoming clip. The line takes the ease of `newProgress`
/// back to the power of 0.42: it lingers in the middle but does not halt.
class QVScanTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVScanTransitionMTIFilter(const QVFilterClass& filterClass = QVScanTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Which of the ways named in the class record; another value means the first.
    int scanType() const { return scanType_; }
    void setScanType(int scanType) { scanType_ = scanType; }

    /// 0.5 + 0.5 (2p - 1)³: fast at both ends, at rest in the middle.
    float newProgress() const override;
    /// "progress" (eased), "start", "duration", "ratio", "scanType".
    MTIParameters parameters() const override;

  private:
    int scanType_ = 0;
};

}  // namespace qv
