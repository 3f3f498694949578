#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRotateSliceTransitionMTIFilterClass;

/// The outgoing clip is cut into pieces that turn away and leave the incoming one.
class QVRotateSliceTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVRotateSliceTransitionMTIFilter(
        const QVFilterClass& filterClass = QVRotateSliceTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Which of the ways named in the class record; another value means the first.
    int type() const { return type_; }
    void setType(int type) { type_ = type; }

    /// `progress` unchanged; the shader eases each piece by itself.
    float newProgress() const override { return progress(); }
    /// "progress", "start", "duration", "ratio", "type".
    MTIParameters parameters() const override;

  private:
    int type_ = 0;
};

}  // namespace qv
