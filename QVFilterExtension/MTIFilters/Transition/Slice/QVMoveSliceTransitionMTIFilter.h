#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVMoveSliceTransitionMTIFilterClass;

/// The frames are cut into strips; neighbours move opposite ways, each pushing the outgoing clip out and
/// pulling the incoming one in.
class QVMoveSliceTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVMoveSliceTransitionMTIFilter(
        const QVFilterClass& filterClass = QVMoveSliceTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Number of strips; below 1 counts as 1.
    int count() const { return count_; }
    void setCount(int count) { count_ = count; }

    /// Which of the ways named in the class record; another value means the first.
    int type() const { return type_; }
    void setType(int type) { type_ = type; }

    /// `progress` unchanged; the shader eases each piece by itself.
    float newProgress() const override { return progress(); }
    /// "progress", "start", "duration", "count", "type".
    MTIParameters parameters() const override;

  private:
    int count_ = 2;
    int type_ = 0;
};

}  // namespace qv
