#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTearPaperMoveLeftMTIFilterClass;

/// A collage in stop motion: while the outgoing clip zooms in, blank scraps and then a torn photograph of it
/// come up; a large torn sheet enters from the right, both photographs change to the incoming clip, the small
/// one leaves at the top left and the sheet fills the frame.
///
/// Progress is cut at n/180 into ten phases, A0 to A9, each closed below and open above; everything stands
/// still within a phase and jumps between them. All transforms are in pixels of the frame, about its centre,
/// y up; a scale of 0 hides a layer.
class QVTearPaperMoveLeftMTIFilter : public QVTearPaperTransitionMTIFilter {
  public:
    explicit QVTearPaperMoveLeftMTIFilter(
        const QVFilterClass& filterClass = QVTearPaperMoveLeftMTIFilterClass);

    /// An asset in the frame's middle, sized as for a frame 1920 wide, or from its top left corner on, as
    /// high as the frame. Kept for the process: the last four of the former and two of the latter.
    MTIImage getDispatchImageWithImageName(const std::string& fileName) const;
    MTIImage getFrameImageWithImageName(const std::string& fileName) const;

    /// The scraps and shapes that the collage is made of.
    MTIImage videoButtomImage() const { return getDispatchImageWithImageName("paper01_smallframe.png"); }
    MTIImage videoSizeImage() const { return getDispatchImageWithImageName("paper01_viderSize.png"); }
    MTIImage middleImage1() const { return getDispatchImageWithImageName("trans_paper_small.png"); }
    MTIImage middleImage2() const { return getDispatchImageWithImageName("trans_paper_medium.png"); }
    MTIImage biggerVideoButtomImage() const { return getFrameImageWithImageName("paper01_biggerButtom.png"); }
    MTIImage biggerVideoSizeImage() const { return getFrameImageWithImageName("paper01_biggerSize.png"); }

    /// Of the outgoing clip that lies at the bottom.
    CGAffineTransform getButtomTransformWithProgress(double progress) const;
    /// Of the clip within the small photograph.
    CGAffineTransform getMask1BlendImageTransformWithProgress(double progress) const;
    /// Of the clip within the large sheet.
    CGAffineTransform getMask2BlendImageTransformWithProgress(double progress) const;
    /// Of the small pieces.
    CGAffineTransform getTopImageRotateTransformWithProgress(double progress) const;
    /// Of the large sheet.
    CGAffineTransform getMiddleImageRotateTransformWithProgress(double progress) const;

    /// The small piece that lies on top, before its transform: a blank scrap, the clip frame on torn paper,
    /// or nil.
    MTIImage getTopMaterialImageWithProgress(double progress, const MTIImage& materialImage);
    MTIImage outputImage() override;

  private:
    /// `clipFrame` cut to the shape `size` and laid on the paper `buttom`.
    MTIImage onPaper(const MTIImage& clipFrame, const MTIImage& size, const MTIImage& buttom);
    MTIImage blended(const MTIImage& background, const MTIImage& image);

    MTIBlendFilter normalBlendFilter_{MTIBlendMode::normal};
    std::unique_ptr<QVTransitionMTIFilter> videoBlendFilter_;
};

}  // namespace qv
