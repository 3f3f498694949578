#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVTileMTIFilterClass;

/// Repeats the input from the top left over an area of another size, pixel for pixel; what does not fit is
/// cut off at the right and at the bottom.
class QVTileMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVTileMTIFilter(const QVFilterClass& filterClass = QVTileMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// Pixels, fractions are cut off. An empty size, which it has at first, stands for the input's.
    CGSize outSize() const { return outSize_; }
    void setOutSize(CGSize size) { outSize_ = size; }

    MTIImage outputImage() override;

  private:
    CGSize outSize_;
};

}  // namespace qv
