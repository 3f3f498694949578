#pragma once

#include <cstdint>

#include "QVFilterCore/QVMTITwoInputFilter.h"

namespace qv {

extern const QVFilterClass QVRetroColorBlendMTIFilterClass;

/// Lays the second picture over the first as coloured light from one side: what is bright in it lights the
/// picture, in an orange, amber, rose or turquoise by the side, and less the farther from there.
class QVRetroColorBlendMTIFilter : public QVMTITwoInputFilter {
  public:
    explicit QVRetroColorBlendMTIFilter(const QVFilterClass& filterClass = QVRetroColorBlendMTIFilterClass)
        : QVMTITwoInputFilter(filterClass) {}

    /// Where the light comes from: 0 left, 1 top, 2 right, 3 bottom.
    std::int32_t blendFlashSide() const { return blendFlashSide_; }
    void setBlendFlashSide(std::int32_t side) { blendFlashSide_ = side; }

    /// "flashSide".
    MTIParameters parameters() const override { return {{"flashSide", blendFlashSide_}}; }

  private:
    std::int32_t blendFlashSide_ = 0;
};

}  // namespace qv
