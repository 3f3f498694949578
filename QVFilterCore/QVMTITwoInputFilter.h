#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVMTITwoInputFilterClass;

/// A filter over two images: one pass of the class's kernel over both, with the size of the first. Nil unless
/// both are set.
class QVMTITwoInputFilter : public QVMTIOneInputFilter {
  public:
    explicit QVMTITwoInputFilter(const QVFilterClass& filterClass = QVMTITwoInputFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// The second image; stretched over the first where their sizes differ.
    const MTIImage& inputImage2() const { return inputImage2_; }
    void setInputImage2(MTIImage image) { inputImage2_ = std::move(image); }

    MTIImage outputImage() override;

  private:
    MTIImage inputImage2_;
};

}  // namespace qv
