#pragma once

#include <vector>

#include "QVFilterCore/QVMTIOneInputFilter.h"
#include "QVFilterCore/SpiritParam.h"

namespace qv {

extern const QVFilterClass QVSpiritFilterClass;

/// Draws textured sprites over the input, the first of the list lowest. The result has the input's size; all
/// sprites together are one pass, and none when no sprite can be seen. Sprites that could never be (no
/// texture, a transform or an alpha that is not finite) are left out of the graph; without any others, the
/// result is the input itself.
class QVSpiritFilter : public QVMTIOneInputFilter {
  public:
    explicit QVSpiritFilter(const QVFilterClass& filterClass = QVSpiritFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// The sprites, the lowest first.
    const std::vector<SpiritParam>& params() const { return params_; }
    void setParams(std::vector<SpiritParam> params) { params_ = std::move(params); }

    MTIImage outputImage() override;

  private:
    std::vector<SpiritParam> params_;
};

}  // namespace qv
