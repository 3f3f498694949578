#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVSceneBlendFilter.h"

namespace qv {

extern const QVFilterClass QVBuildingFilterClass;

/// The subject turns from the feet up into a house at night with lit windows, before a plain dark blue.
class QVBuildingFilter : public QVSceneBlendFilter {
  public:
    explicit QVBuildingFilter(const QVFilterClass& filterClass = QVBuildingFilterClass);
};

}  // namespace qv
