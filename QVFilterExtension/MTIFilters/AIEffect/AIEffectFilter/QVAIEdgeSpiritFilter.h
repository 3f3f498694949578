#pragma once

#include <string>
#include <vector>

#include "QVFilterCore/QVAIEffectMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVAIEdgeSpiritFilterClass;

/// A sprite on the subject's outline. Lengths are in shorter sides of the frame.
struct QVEdgeSpirit {
    double place = 0;              ///< along the outlines, 0..1 of the way around all of them
    double distance = 0;           ///< outwards from the subject
    double rise = 0;               ///< upwards, besides
    CGSize size;                   ///< of the sprite's picture; a negative side mirrors it
    double angle = 0;              ///< of the sprite, radians, anticlockwise
    float alpha = 1;               ///< 0..1
    UIColor tint;                  ///< multiplies the picture's colour
    SpiritParam::Texture texture;  ///< nil draws nothing
};

/// Draws sprites along the subject's outline, over everything; what lies on the mask's border has none. The
/// way around a part of the subject begins above its middle, so that a place stays where it is while the
/// subject moves. Without a mask in memory or a subject in it the result is the frame.
class QVAIEdgeSpiritFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAIEdgeSpiritFilter(const QVFilterClass& filterClass = QVAIEdgeSpiritFilterClass)
        : QVAIEffectMTIFilter(filterClass) {}

    /// The sprites, the lowest first. Subclasses make their own, for the time and the strength as they stand.
    virtual std::vector<QVEdgeSpirit> edgeSpiritParam() const { return edgeSpiritParam_; }
    void setEdgeSpiritParam(std::vector<QVEdgeSpirit> sprites) { edgeSpiritParam_ = std::move(sprites); }

    /// The sprites of the last frame asked for, where they were drawn.
    const std::vector<SpiritParam>& spiritParams() const { return spiritFilter_.params(); }

    MTIImage outputImage() override;

  protected:
    /// A picture of the bundle as a sprite's texture, loaded once per process. A missing one is nil, and
    /// logged once.
    static SpiritParam::Texture spiritTextureNamed(const std::string& fileName);

  private:
    std::vector<QVEdgeSpirit> edgeSpiritParam_;
    QVSpiritFilter spiritFilter_;
};

}  // namespace qv
