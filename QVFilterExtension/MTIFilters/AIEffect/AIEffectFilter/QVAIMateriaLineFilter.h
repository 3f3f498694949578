#pragma once

#include "QVFilterCore/QVMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIMateriaLineFilterClass;

/// Cuts a layer out of a material: where the layer is opaque the material shows, whatever the layer's colour.
/// The result has the layer's size, and the material is stretched over it. Nil without either.
class QVAIMateriaLineFilter : public QVMTIFilter {
  public:
    explicit QVAIMateriaLineFilter(const QVFilterClass& filterClass = QVAIMateriaLineFilterClass)
        : QVMTIFilter(filterClass) {}

    /// What the layer is made of.
    const MTIImage& materiaImage() const { return materiaImage_; }
    void setMateriaImage(MTIImage image) { materiaImage_ = std::move(image); }
    /// Its alpha is read.
    const MTIImage& interlayerImage() const { return interlayerImage_; }
    void setInterlayerImage(MTIImage image) { interlayerImage_ = std::move(image); }

    MTIImage outputImage() override;

  private:
    MTIImage materiaImage_, interlayerImage_;
};

}  // namespace qv
