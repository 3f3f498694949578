#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourHaloFilter.h"

namespace qv {

extern const QVFilterClass QVAIGlitterHaloFilterClass;

/// A golden glow behind the subject, like light from behind. Of a colour in `colors` only the rim takes the
/// hue.
class QVAIGlitterHaloFilter : public QVAIContourHaloFilter {
  public:
    explicit QVAIGlitterHaloFilter(const QVFilterClass& filterClass = QVAIGlitterHaloFilterClass)
        : QVAIContourHaloFilter(filterClass) {
        setRadiusRatio(0.0);
    }

    std::optional<QVSaberParam> glowParam() const override;
};

}  // namespace qv
