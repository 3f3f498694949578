#pragma once

#include "QVFilterCore/QVMTIFilter.h"

namespace qv {

extern const QVFilterClass QVMTIOneInputFilterClass;

/// A filter over one image; one pass of the class's kernel unless `outputImage` says otherwise.
class QVMTIOneInputFilter : public QVMTIFilter {
  public:
    explicit QVMTIOneInputFilter(const QVFilterClass& filterClass = QVMTIOneInputFilterClass)
        : QVMTIFilter(filterClass) {}

    /// The frame to work on, of any size; nil until it is set, and so is the output then.
    const MTIImage& inputImage() const { return inputImage_; }
    virtual void setInputImage(MTIImage image) { inputImage_ = std::move(image); }

    /// The uniforms of the pass, built anew for each frame.
    virtual MTIParameters parameters() const { return {}; }
    MTIImage outputImage() override { return applyKernel({inputImage()}, parameters()); }

  private:
    MTIImage inputImage_;
};

/// The input of every filter over a frame, for the records of those that have further ones.
inline constexpr QVInput kInputImage = qvInput<&QVMTIOneInputFilter::setInputImage>(
    {.name = "inputImage", .role = QVInputRole::frame, .help = "the frame to work on"});

}  // namespace qv
