#pragma once

#include <string>

#include "Platform/Drawing/UIImage.h"
#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTearPaperTransitionMTIFilterClass;

/// Common part of the transitions that show clips on pieces of torn paper: assets drawn at the size of
/// `inputImage1` (W × H, below). A file that is missing leaves the canvas empty.
class QVTearPaperTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVTearPaperTransitionMTIFilter(
        const QVFilterClass& filterClass = QVTearPaperTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// Pixels that the asset last drawn by `getScaleFrameImageWithName` took up; zero before.
    CGSize imageSize() const { return imageSize_; }
    void setImageSize(CGSize size) { imageSize_ = size; }

    /// An asset in the middle of a transparent W × H canvas, as large as it would be in a frame 1920 wide.
    /// Sets `imageSize`.
    UIImage getScaleFrameImageWithName(const std::string& fileName);
    /// An asset from the canvas's top left corner on, as wide as the frame's longer side.
    UIImage getScaleImageWithName(const std::string& fileName) const;

  protected:
    /// An asset on a canvas of the frame's size.
    struct DrawnAsset {
        UIImage canvas;  ///< W × H pixels, transparent around the asset
        CGSize size;     ///< of the asset on it, pixels
    };
    /// What `getScaleFrameImageWithName` draws.
    DrawnAsset drawnInMiddle(const UIImage& asset) const;
    DrawnAsset drawnInMiddle(const std::string& fileName) const;
    /// From the top left corner on, as high as the frame.
    UIImage drawnAtFrameHeight(const std::string& fileName) const;

  private:
    CGSize imageSize_;
};

}  // namespace qv
