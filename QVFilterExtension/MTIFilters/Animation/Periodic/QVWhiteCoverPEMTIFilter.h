#pragma once

#include "QVFilterExtension/MTIFilters/Animation/Periodic/QVColCoverPEMTIFilter.h"

namespace qv {

extern const QVFilterClass QVWhiteCoverPEMTIFilterClass;

/// The colour cover in white, with its shader.
class QVWhiteCoverPEMTIFilter : public QVColCoverPEMTIFilter {
  public:
    explicit QVWhiteCoverPEMTIFilter(const QVFilterClass& filterClass = QVWhiteCoverPEMTIFilterClass)
        : QVColCoverPEMTIFilter(filterClass) {
        setCoverCol(UIColor::whiteColor());
    }
};

}  // namespace qv
