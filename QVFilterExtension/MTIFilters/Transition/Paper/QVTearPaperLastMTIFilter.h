#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperDivisionFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/TearPaperCollage.h"

namespace qv {

extern const QVFilterClass QVTearPaperLastMTIFilterClass;

/// The last handfuls of an old poster: the outgoing clip is ripped off from the right, handful by handful;
/// each is held up for a moment, turns and falls, and the incoming clip is what the poster covered.
///
/// The tables have a row for each phase that begins at `kBegins`; before the first the outgoing clip is
/// alone, from the last one on the incoming clip. The incoming clip comes from `kCloser` to its own size in
/// equal steps.
class QVTearPaperLastMTIFilter : public TearPaperCollage {
  public:
    explicit QVTearPaperLastMTIFilter(const QVFilterClass& filterClass = QVTearPaperLastMTIFilterClass)
        : TearPaperCollage(filterClass) {}

    static constexpr int kBegins[] = {15, 26, 37, 51, 62, 76, 87, 102, 113, 127, 138, 149, 162};  ///< 180ths
    /// What is torn, and what falls.
    struct Rip {
        double top;      ///< where the tear crosses the frame's upper side, widths from the left
        double bottom;   ///< the same of its lower side
        PaperPose from;  ///< of the handful, "paper07_scrap…", before it was torn off
        PaperPose to;    ///< where it is now; scale 0 without one
    };
    /// Of each phase.
    static constexpr Rip kRips[] = {{0.86, 1.06, {}, {}},
                                    {0.78, 0.92, {0.8, 0.38, 0.2}, {0.84, 0.39, 0.24, -9}},
                                    {0.78, 0.92, {0.8, 0.38, 0.2}, {0.84, 0.41, -0.34, -34}},
                                    {0.68, 0.58, {1, 0.28, -0.12}, {1.05, 0.27, -0.06, 8}},
                                    {0.68, 0.58, {1, 0.28, -0.12}, {1.05, 0.26, -0.6, 30}},
                                    {0.46, 0.56, {1.1, 0.14, 0.12}, {1.15, 0.15, 0.17, -7}},
                                    {0.46, 0.56, {1.1, 0.14, 0.12}, {1.15, 0.18, -0.44, -28}},
                                    {0.34, 0.22, {1.1, -0.12, -0.1}, {1.15, -0.13, -0.04, 9}},
                                    {0.34, 0.22, {1.1, -0.12, -0.1}, {1.15, -0.16, -0.58, 33}},
                                    {0.06, 0.12, {1.2, -0.3, 0.1}, {1.25, -0.28, 0.16, -6}},
                                    {-0.4, -0.3, {1.2, -0.3, 0.1}, {1.25, -0.24, -0.22, -22}},
                                    {-0.4, -0.3, {1.2, -0.3, 0.1}, {1.25, -0.18, -0.72, -41}}};
    static constexpr double kCloser = 1.14;  ///< scale

    MTIImage outputImage() override;

  private:
    QVPaperDivisionFilter divisionFilter_;
};

}  // namespace qv
