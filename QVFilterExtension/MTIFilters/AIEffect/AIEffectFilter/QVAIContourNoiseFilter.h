#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIContourHaloFilter.h"

namespace qv {

extern const QVFilterClass QVAIContourNoiseFilterClass;

/// Light that a kernel makes of the line along the subject's outline, behind the subject. This one: dust that
/// the edge sheds, grains of a hundredth of the longer side and less that float up and twinkle, within a
/// tenth of the outline; the strength says how many. Without a mask or a subject the result is the input
/// itself.
class QVAIContourNoiseFilter : public QVAIContourHaloFilter {
  public:
    explicit QVAIContourNoiseFilter(const QVFilterClass& filterClass = QVAIContourNoiseFilterClass)
        : QVAIContourHaloFilter(filterClass) {}

    /// Warm white.
    std::vector<UIColor> defaultColors() const override { return {UIColor{1, 0.87, 0.62}}; }
    /// The colour that the line's own fades to, at the default colour; it takes the hue of the user's.
    virtual UIColor secondColor() const { return {1, 0.55, 0.25}; }

    /// "iTime", "effectValue", "lineColor", "secondColor".
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  protected:
    /// Width of the line that the kernel reads, longer sides of the mask.
    virtual float lineThickness() const { return 0.2f; }
    /// Size of the light, sizes of the frame; the line has half the frame's.
    virtual double lightScale() const { return 1; }
};

}  // namespace qv
