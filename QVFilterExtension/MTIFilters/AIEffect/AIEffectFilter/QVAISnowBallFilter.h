#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAICelebrateFilter.h"

namespace qv {

extern const QVFilterClass QVAISnowBallFilterClass;

/// The subject in a glass ball of snow, which stands in front of the scene out of focus. In the ball the
/// middle of the picture is seen as through a lens; snow falls behind and before the subject and is stirred
/// up every six seconds. The strength says how thick. Nil without a frame or a mask.
///
/// The ball's picture fills the shorter side; its glass has the middle and the radius that the shader states.
class QVAISnowBallFilter : public QVAICelebrateFilter {
  public:
    explicit QVAISnowBallFilter(const QVFilterClass& filterClass = QVAISnowBallFilterClass)
        : QVAICelebrateFilter(filterClass) {}

    MTIImage outputImage() override;
};

}  // namespace qv
