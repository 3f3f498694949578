#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIBaseLineMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIEdgeGlowFilterClass;

/// The world behind the subject sinks into a dim shade of the line's colour, in which all its edges glow; a
/// line of that colour runs around the subject, which keeps its own light. The shade holds 38 % of the
/// picture's light; edges glow from a contrast of 2.5 % on and fully at 30 %, measured over 0.3 % of the
/// frame's shorter side.
class QVAIEdgeGlowFilter : public QVAIBaseLineMTIFilter {
  public:
    explicit QVAIEdgeGlowFilter(const QVFilterClass& filterClass = QVAIEdgeGlowFilterClass)
        : QVAIBaseLineMTIFilter(filterClass) {}

    /// Cyan.
    std::vector<UIColor> defaultColors() const override { return {{0, 1, 1}}; }

    /// The outline with a radius of 1/512 as a line of 4/512 of the frame's longer side.
    MTIImage innerLineImage() const;
    /// "edgeGlowColor": the line's.
    MTIParameters parameters() const override;

  protected:
    MTIImage imageWithLine() override;
};

}  // namespace qv
