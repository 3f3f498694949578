#pragma once

#include "QVFilterExtension/MTIFilters/Animation/Remain/QVBaseRemainMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBlurClassFilterClass;

/// Base of the remaining blurs and mosaics: they hold shorter and stay clear longer than the others.
class QVBlurClassFilter : public QVBaseRemainMTIFilter {
  public:
    explicit QVBlurClassFilter(const QVFilterClass& filterClass = QVBlurClassFilterClass)
        : QVBaseRemainMTIFilter(filterClass) {}

    double getRateOfChangeWithProgress(float progress) const override;
    double getClearRemainTimeWithProgress(float progress) const override;
};

}  // namespace qv
