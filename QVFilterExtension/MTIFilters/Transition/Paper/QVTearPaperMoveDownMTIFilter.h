#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Paper/TearPaperCollage.h"

namespace qv {

extern const QVFilterClass QVTearPaperMoveDownMTIFilterClass;

/// The outgoing clip is a poster that is torn along its top and slides down in jerks; wrapping paper behind
/// it hangs on a little longer, and behind both comes the incoming clip.
///
/// The table has a row for each phase that begins at `kBegins`; before the first the outgoing clip is alone,
/// from the last one on the incoming clip. The tear is `kTear` of the frame's height above its middle,
/// `kTilted` times as far when the sheet is enlarged to be tilted. The incoming clip starts at `kCloser` and
/// comes back to its own size in equal steps.
class QVTearPaperMoveDownMTIFilter : public TearPaperCollage {
  public:
    explicit QVTearPaperMoveDownMTIFilter(
        const QVFilterClass& filterClass = QVTearPaperMoveDownMTIFilterClass)
        : TearPaperCollage(filterClass) {}

    static constexpr int kBegins[] = {15, 26, 38, 49, 63, 75, 88, 102, 116, 130, 144, 162};  ///< 180ths
    /// How far the sheets have slid.
    struct Slide {
        double sheet;       ///< the poster, fractions of the frame's height down
        double sheetAngle;  ///< its tilt, degrees anticlockwise
        double wrap;        ///< the wrapping paper, likewise
        double wrapAngle;   ///< its tilt
    };
    /// Of each phase.
    static constexpr Slide kSlides[] = {
        {-0.01, 1.2, -0.2, 0},   {0.07, -1, -0.03, 0.8}, {0.05, 0.8, -0.03, -0.6}, {0.19, 1.6, 0.05, 1.2},
        {0.3, -1.2, 0.16, -0.8}, {0.27, 0.8, 0.14, 1},   {0.46, 2, 0.3, -1.4},     {0.62, -1.4, 0.42, 1},
        {0.8, 1.8, 0.6, -1.2},   {1.02, -1, 0.8, 1.6},   {1.3, 0, 0.96, -1}};
    static constexpr double kTear = 0.45;    ///< fractions of the frame's height
    static constexpr double kTilted = 1.09;  ///< scale of the sheets
    static constexpr double kCloser = 1.2;   ///< scale

    MTIImage outputImage() override;

  private:
    /// "paper03_edgeSize.png", as wide as the frame and more, with its tear at `kTear`, and white below it.
    MTIImage posterShape() const;
};

}  // namespace qv
