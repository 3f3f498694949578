#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Paper/TearPaperCollage.h"

namespace qv {

extern const QVFilterClass QVTearPaperZoomMTIFilterClass;

/// A hole is torn into the outgoing clip: it shows the incoming clip, is torn wider and wider while both
/// zoom, and leaves the frame.
///
/// The tables have a row for each phase that begins at `kBegins`; before the first the outgoing clip is
/// alone, from the last one on the incoming clip. The hole is "paper05_small…" before phase `kLarge` and
/// "paper05_large…" from then on, in upright frames turned by a quarter. The clips zoom by equal steps: the
/// outgoing one to `kOutgoing`, the incoming one from `kIncoming`.
class QVTearPaperZoomMTIFilter : public TearPaperCollage {
  public:
    explicit QVTearPaperZoomMTIFilter(const QVFilterClass& filterClass = QVTearPaperZoomMTIFilterClass)
        : TearPaperCollage(filterClass) {}

    static constexpr int kBegins[] = {15, 26, 38, 53, 64, 76, 91, 104, 116, 129, 144, 162};  ///< 180ths
    /// Of each phase.
    static constexpr PaperPose kHole[] = {
        {0.34, 0.06, 0.04, 10}, {0.62, 0.04, 0.02, -6}, {0.58, 0.04, 0.02, -4}, {1.0, 0, 0, 4},
        {0.66, 0, 0, -3},       {0.84, -0.02, 0.01, 2}, {0.81, -0.02, 0.01, 3}, {1.12, 0, 0, -2},
        {1.45, 0.01, 0, 3},     {1.95, 0, -0.01, -3},   {2.7, 0, 0, 2}};
    static constexpr std::size_t kLarge = 5;   ///< phase of the large hole
    static constexpr double kOutgoing = 1.22;  ///< scale at the end
    static constexpr double kIncoming = 1.6;   ///< scale at the beginning

    MTIImage outputImage() override;
};

}  // namespace qv
