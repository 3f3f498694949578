#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourHaloFilter.h"

namespace qv {

extern const QVFilterClass QVAIFreezHaloFilterClass;

/// A wide halo of drifting wisps behind the subject, white unless `colors` names another.
class QVAIFreezHaloFilter : public QVAIContourHaloFilter {
  public:
    explicit QVAIFreezHaloFilter(const QVFilterClass& filterClass = QVAIFreezHaloFilterClass)
        : QVAIContourHaloFilter(filterClass) {
        setRadiusRatio(0.0);
    }

    std::optional<QVSaberParam> glowParam() const override;
};

}  // namespace qv
