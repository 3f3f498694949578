#pragma once

#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBlurClassFilter.h"

namespace qv {

extern const QVFilterClass QVRemainMosaicMTIFilterClass;

/// The picture comes out of a mosaic whose blocks, 24 across the frame's shorter side, shrink to single
/// pixels, or breaks up into it.
class QVRemainMosaicMTIFilter : public QVBlurClassFilter {
  public:
    explicit QVRemainMosaicMTIFilter(const QVFilterClass& filterClass = QVRemainMosaicMTIFilterClass)
        : QVBlurClassFilter(filterClass) {}

    /// "filterStrength" and "maxDivideCount".
    MTIParameters parameters() const override;
};

}  // namespace qv
