#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourHaloFilter.h"

namespace qv {

extern const QVFilterClass QVAIHUEHaloFilterClass;

/// A soft glow behind the subject in one colour, white unless `colors` names another.
class QVAIHUEHaloFilter : public QVAIContourHaloFilter {
  public:
    explicit QVAIHUEHaloFilter(const QVFilterClass& filterClass = QVAIHUEHaloFilterClass)
        : QVAIContourHaloFilter(filterClass) {
        setRadiusRatio(0.0);
    }

    std::optional<QVSaberParam> glowParam() const override;
};

}  // namespace qv
