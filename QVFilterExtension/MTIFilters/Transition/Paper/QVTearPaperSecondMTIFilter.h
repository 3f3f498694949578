#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Paper/TearPaperCollage.h"

namespace qv {

extern const QVFilterClass QVTearPaperSecondMTIFilterClass;

/// A page of a scrapbook: a sheet of a notebook is pushed up over the outgoing clip, a print of the incoming
/// clip is thrown on it and taped down, and comes closer until it fills the frame.
///
/// The tables have a row for each phase that begins at `kBegins`; before the first the outgoing clip is
/// alone, from the last one on the incoming clip. The outgoing clip grows by `kGrowth` in each phase. The
/// pieces of tape lie on the print at `kTapes` from their phases on.
class QVTearPaperSecondMTIFilter : public TearPaperCollage {
  public:
    explicit QVTearPaperSecondMTIFilter(const QVFilterClass& filterClass = QVTearPaperSecondMTIFilterClass)
        : TearPaperCollage(filterClass) {}

    static constexpr int kBegins[] = {15, 26, 36, 50, 60, 71, 87, 101, 120, 134, 148, 162};  ///< 180ths
    static constexpr double kGrowth = 0.012;                                                 ///< of its scale
    /// The sheet, "paper02_note.png".
    static constexpr PaperPose kNote[] = {
        {1.2, -0.06, -0.8, -9}, {1.2, 0.03, -0.36, 6},  {1.2, 0, -0.02, -4},  {1.2, 0, -0.02, -4},
        {1.2, 0, -0.02, -4},    {1.2, 0, -0.02, -4.5},  {1.2, 0, -0.02, -4},  {1.2, 0, -0.02, -4},
        {1.2, -0.02, -0.3, -2}, {1.2, -0.05, -0.75, 3}, {1.2, -0.05, -1.4, 5}};
    /// The print, "paper02_print.png": scale of the incoming clip.
    static constexpr PaperPose kPrint[] = {{},
                                           {},
                                           {},
                                           {1.02, 0.1, 0.13, 14},
                                           {0.62, 0.02, 0.03, 7},
                                           {0.51, 0, 0, -3},
                                           {0.51, 0, 0, -3},
                                           {0.51, 0.004, 0.002, -2.6},
                                           {0.6, 0, 0.01, -1.5},
                                           {0.76, 0, 0, 1.5},
                                           {0.94, 0, 0, -0.8}};
    /// A piece of tape.
    struct Tape {
        std::size_t phase;  ///< from which on it lies there
        PaperPose pose;     ///< on the print
    };
    /// "paper02_tape.png".
    static constexpr Tape kTapes[] = {{7, {1.15, -0.46, 0.47, 38}}, {8, {1.15, 0.46, 0.48, -34}}};

    MTIImage outputImage() override;
};

}  // namespace qv
