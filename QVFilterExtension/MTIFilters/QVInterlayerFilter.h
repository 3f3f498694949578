#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVInterlayerFilterClass;

/// Puts a layer between the subject and the background: the layer lies over the picture, and the subject,
/// where the mask is white, lies over the layer untouched. Without a layer or a mask the step that needs it
/// is left out; without both the result is the input itself. Both are stretched over the input.
class QVInterlayerFilter : public QVMTIOneInputFilter {
  public:
    explicit QVInterlayerFilter(const QVFilterClass& filterClass = QVInterlayerFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Red is read: 1 on the subject.
    const MTIImage& maskImage() const { return maskImage_; }
    void setMaskImage(MTIImage image) { maskImage_ = std::move(image); }
    const MTIImage& interlayerImage() const { return interlayerImage_; }
    void setInterlayerImage(MTIImage image) { interlayerImage_ = std::move(image); }

    MTIImage outputImage() override;

  private:
    MTIImage maskImage_, interlayerImage_;
};

}  // namespace qv
