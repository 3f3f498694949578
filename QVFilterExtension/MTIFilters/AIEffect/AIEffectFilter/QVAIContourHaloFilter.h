#pragma once

#include <optional>

#include "QVALObjectContour/QVObjectContour.h"
#include "QVFilterCore/QVAIEffectMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Bezier/QVBezierLineRender.h"
#include "QVFilterExtension/Saber/QVSaberParam.h"

namespace qv {

extern const QVFilterClass QVAIContourHaloFilterClass;

/// The record of `colors` for classes that take one colour of light.
inline constexpr QVProperty kLightColors =
    qvProperty<&QVAIEffectMTIFilter::colors, &QVAIEffectMTIFilter::setColors>(
        {.name = "colors", .title = "Colour", .help = "colour of the light, the class's own when empty"});

/// A glowing line along the subject's outline, behind the subject. How it looks is the subclass's; without a
/// look, a subject or a mask the result is the input itself.
class QVAIContourHaloFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAIContourHaloFilter(const QVFilterClass& filterClass = QVAIContourHaloFilterClass);

    /// 1: the line lies over the whole frame; any other: behind the subject.
    int type() const { return type_; }
    void setType(int type) { type_ = type; }
    /// How coarse the outline is, in longer sides of the mask.
    double radiusRatio() const { return radiusRatio_; }
    void setRadiusRatio(double ratio) { radiusRatio_ = ratio; }
    /// How the line looks; nothing unless set. Subclasses give their own.
    virtual std::optional<QVSaberParam> glowParam() const { return glowParam_; }
    void setGlowParam(QVSaberParam param) { glowParam_ = std::move(param); }

    /// White.
    std::vector<UIColor> defaultColors() const override { return {UIColor::whiteColor()}; }
    /// Hue of the line's colour less that of the class's own, turns.
    double getOffsetH() const;

    /// The outline of the mask as it stands, ready to be drawn: mask pixels. Empty without a mask in memory.
    const QVOutlineSet& calcPointsArray();
    /// The line of the outline that was found last, as an image to lay over the frame; nil without one.
    MTIImage renderLineWithParam(const QVSaberParam& param);

    MTIImage outputImage() override;

  protected:
    /// The mask of a line along the outline that was found last, before `extraTransform`; its thickness in
    /// longer sides of the mask, its size in sizes of the frame. Nil without an outline.
    MTIImage drawLine(float thickness, double scale,
                      MTIPixelFormat format = MTIPixelFormat::unspecified) const;
    /// A picture of the size and in the place of such a mask, put where `extraTransform` has it.
    MTIImage placed(const MTIImage& image) const;
    /// The frame with `light` behind the subject, or over everything.
    MTIImage composed(const MTIImage& light) const;

  private:
    int type_ = 0;
    double radiusRatio_ = 0.0078125;
    std::optional<QVSaberParam> glowParam_;
    QVOutlineSet pointsArray_;
    QVBezierLineRender bezierRender_;
};

}  // namespace qv
