#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourNoiseFilter.h"

namespace qv {

extern const QVFilterClass QVAIFireFilterClass;

/// Flames lick up from the outline behind the subject and shed embers. The strength sets how high they rise,
/// at most a sixth of the longer side.
class QVAIFireFilter : public QVAIContourNoiseFilter {
  public:
    explicit QVAIFireFilter(const QVFilterClass& filterClass = QVAIFireFilterClass)
        : QVAIContourNoiseFilter(filterClass) {}

    std::vector<UIColor> defaultColors() const override { return {UIColor{1, 0.62, 0.16}}; }
    UIColor secondColor() const override { return {1, 0.16, 0.02}; }

  protected:
    float lineThickness() const override { return 0.13f; }
    double lightScale() const override { return 0.5; }
};

}  // namespace qv
