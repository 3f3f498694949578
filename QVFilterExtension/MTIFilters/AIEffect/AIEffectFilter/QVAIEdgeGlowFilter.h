#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIBaseLineMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIEdgeGlowFilterClass;

/// The world behind the subject sinks into a dim shade of the line's colour, in which all its edges glow; a
/// line of that colour runs around the subject, which keeps its own light. The shade holds a sixth of the
/// picture's light; edges glow from a contrast of 4 % on, fully at 28 %, over a thousandth of the frame's
/// shorter side.
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
