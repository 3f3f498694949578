#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourNoiseFilter.h"

namespace qv {

extern const QVFilterClass QVAICurrentFilterClass;

/// Two arcs crackle along the outline and leap to other ways twelve times a second, a third one strikes out
/// further now and then. The strength sets how far they strike.
class QVAICurrentFilter : public QVAIContourNoiseFilter {
  public:
    explicit QVAICurrentFilter(const QVFilterClass& filterClass = QVAICurrentFilterClass)
        : QVAIContourNoiseFilter(filterClass) {}

    std::vector<UIColor> defaultColors() const override { return {UIColor{0.25, 0.62, 1}}; }
    UIColor secondColor() const override { return {0.45, 0.25, 1}; }

  protected:
    float lineThickness() const override { return 0.12f; }
    double lightScale() const override { return 0.5; }
};

}  // namespace qv
