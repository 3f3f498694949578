#pragma once

#include <functional>
#include <span>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVSpiritFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperTransitionMTIFilter.h"

namespace qv {

/// Where a piece lies: scaled and turned about its middle, then moved from the frame's middle.
struct PaperPose {
    double scale = 0;     ///< 0 hides it
    double x = 0, y = 0;  ///< fractions of the frame's width and height, y up
    double angle = 0;     ///< degrees anticlockwise
};

/// Common part of the torn-paper transitions that tell their stories in phases. Progress is cut at whole
/// 180ths; everything stands still within a phase and jumps between them. A pose of scale 1 is a clip's own
/// place and size, and that of an asset as `drawnInMiddle` draws it. Small things grow in upright frames,
/// where a 1920th of the width is little.
class TearPaperCollage : public QVTearPaperTransitionMTIFilter {
  public:
    using QVTearPaperTransitionMTIFilter::QVTearPaperTransitionMTIFilter;

  protected:
    /// The incoming frame at the outgoing one's size.
    MTIImage incoming() const { return inputImage2().resize(inputImage1().size()); }
    /// How many of `begins`, rising 180ths, have been reached.
    std::size_t phaseOf(std::span<const int> begins) const;

    /// What is fixed to a piece at `relative`, fractions of a frame as large as the piece's scale says.
    PaperPose fixedTo(const PaperPose& piece, const PaperPose& relative) const;
    /// In pixels of the frame.
    CGAffineTransform placed(const PaperPose& pose) const;
    /// `piece` over `below`.
    MTIImage laid(const MTIImage& below, const MTIImage& piece);
    /// `clip` within the shape of `size`, both lying as their poses say.
    MTIImage cut(const MTIImage& clip, const PaperPose& clipPose, const MTIImage& size,
                 const PaperPose& pose);
    /// An asset as `draw` makes it for the frame, kept for the process.
    MTIImage fitted(const std::string& fileName,
                    const std::function<UIImage(const UIImage&, CGSize)>& draw) const;
    /// The same, as `drawnInMiddle` draws it.
    MTIImage paper(const std::string& fileName) const;
    /// The same, as `getScaleImageWithName` does: a picture that covers the whole frame.
    MTIImage page(const std::string& fileName) const;

    /// An asset on top. Tape, marks and rims: they cost what they cover.
    SpiritParam scrap(const std::string& fileName, const PaperPose& pose) const;
    /// A border around a clip of the same pose: `name`.png, or `name`_V.png in an upright frame, with a
    /// window of the frame's shape.
    SpiritParam framing(const std::string& name, const PaperPose& pose) const;
    MTIImage decorated(const MTIImage& below, std::vector<SpiritParam> scraps);

    /// How much larger than in a wide frame small things are.
    double enlargement() const;
    bool isUpright() const { return ratio() < 1; }

  private:
    SpiritParam sprite(const PaperPose& pose, double width, SpiritParam::Texture texture) const;

    MTIBlendFilter normalBlendFilter_{MTIBlendMode::normal};
    QVTransitionMTIFilter videoBlendFilter_{videoBlendClass()};
    QVSpiritFilter spiritFilter_;
    static const QVFilterClass& videoBlendClass();
};

}  // namespace qv
