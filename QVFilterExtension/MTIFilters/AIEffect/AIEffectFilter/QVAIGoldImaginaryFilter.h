#pragma once

#include "QVFilterCore/QVLookupMTIFilter.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIBaseLineMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIGoldImaginaryFilterClass;

/// A line of gold leaf around the subject, before a world that has lost its colour; the subject keeps its
/// own. Other colours make other metals. What is missing in the bundle, leaf or world, is left out.
class QVAIGoldImaginaryFilter : public QVAIBaseLineMTIFilter {
  public:
    explicit QVAIGoldImaginaryFilter(const QVFilterClass& filterClass = QVAIGoldImaginaryFilterClass);

    /// Gold.
    std::vector<UIColor> defaultColors() const override { return {{1, 0.7607843137254902, 0}}; }

    /// The outline as a line of 6/512 of the frame's longer side.
    MTIImage contourUIImage() const;

  protected:
    MTIImage imageWithLine() override;

  private:
    /// The leaf in the line's metal, of the frame's size: tinting costs less there than a sample of a pixel.
    MTIImage tintedMaterial() const;

    QVLookupMTIFilter lookupFilter_;
};

}  // namespace qv
