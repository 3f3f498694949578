#pragma once

#include <memory>

#include "Platform/Geometry/UIColor.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "QVFilterCore/QVFilterClass.h"

namespace qv {

class MTIContext;

/// Strength at which effects start, 0..1; the motion blurs switch regime here.
inline constexpr float kDefaultEffectValue = 0.5f;

extern const QVFilterClass QVMTIFilterClass;

/// Root of all filters: an object that a host creates once, configures per frame and asks for an image.
/// Nothing is rendered here. An instance is used by one thread at a time; it is not copied.
class QVMTIFilter {
  public:
    explicit QVMTIFilter(const QVFilterClass& filterClass = QVMTIFilterClass) : class_(&filterClass) {}
    virtual ~QVMTIFilter() = default;
    QVMTIFilter(const QVMTIFilter&) = delete;
    QVMTIFilter& operator=(const QVMTIFilter&) = delete;

    /// The record that it was made from.
    const QVFilterClass& filterClass() const { return *class_; }

    /// The picture for the inputs as they stand; nil when a required input is nil.
    virtual MTIImage outputImage() = 0;

    /// Format of the result's texture; `unspecified`, as it starts, is the working format of the context that
    /// renders.
    MTIPixelFormat outputPixelFormat() const { return outputPixelFormat_; }
    void setOutputPixelFormat(MTIPixelFormat format) { outputPixelFormat_ = format; }

    /// The four components narrowed to float.
    static MTIVector rgbaVectorFromUIColor(const UIColor& color);
    /// Red, green and blue narrowed to float.
    static MTIVector rgbVectorFromUIColor(const UIColor& color);

    /// The context for filters that have to render by themselves: what the host set, else one made on first
    /// use; nil when no device can be had. Thread-safe.
    static std::shared_ptr<MTIContext> sharedContext();
    static void setSharedContext(std::shared_ptr<MTIContext> context);

  protected:
    /// One pass of this class's kernel, with the size of the first input. Nil when the first input is nil.
    MTIImage applyKernel(std::vector<MTIImage> inputs, MTIParameters parameters) const;

  private:
    const QVFilterClass* class_;
    MTIPixelFormat outputPixelFormat_ = MTIPixelFormat::unspecified;
};

}  // namespace qv
