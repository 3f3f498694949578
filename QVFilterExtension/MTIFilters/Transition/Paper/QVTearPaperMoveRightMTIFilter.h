#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Paper/TearPaperCollage.h"

namespace qv {

extern const QVFilterClass QVTearPaperMoveRightMTIFilterClass;

/// A letter: the outgoing clip shrinks to a postage stamp on blue paper and is cancelled by a postmark; it is
/// pushed out to the right by a stamp of the incoming clip, which comes closer until it fills the frame.
///
/// The tables have a row for each phase that begins at `kBegins`; before the first the outgoing clip is
/// alone, from the last one on the incoming clip.
class QVTearPaperMoveRightMTIFilter : public TearPaperCollage {
  public:
    explicit QVTearPaperMoveRightMTIFilter(
        const QVFilterClass& filterClass = QVTearPaperMoveRightMTIFilterClass)
        : TearPaperCollage(filterClass) {}

    static constexpr int kBegins[] = {15, 26, 36, 46, 62, 72, 90, 100, 111, 121, 139, 149, 162};  ///< 180ths
    /// The stamps, "paper04_stamp.png": scale of their clips. The outgoing one first.
    static constexpr PaperPose kStamps[][2] = {{{0.94, 0, 0, 0}, {}},
                                               {{0.78, 0, 0, -2}, {}},
                                               {{0.6, 0, 0, 2}, {}},
                                               {{0.56, 0, 0, -1.2}, {}},
                                               {{0.555, 0.003, -0.004, -1.5}, {}},
                                               {{0.56, 0, 0, -1.2}, {}},
                                               {{0.56, 0.16, 0.01, 2}, {0.56, -0.68, -0.02, -7}},
                                               {{0.56, 0.42, -0.01, -2}, {0.56, -0.38, 0.02, 4}},
                                               {{0.56, 0.74, 0, 5}, {0.56, -0.08, -0.01, -3}},
                                               {{}, {0.56, 0.02, 0, 1.6}},
                                               {{}, {0.66, 0, 0, -1.2}},
                                               {{}, {0.84, 0, 0, 0.8}}};
    /// The postmark, "paper04_postmark.png", on the outgoing stamp from phase `kMarked` on; for a phase it is
    /// seen before it hits the paper, `kMarkLifted` times as large.
    static constexpr std::size_t kMarked = 5;
    static constexpr PaperPose kPostmark{1.35, 0.36, -0.27, 11};
    static constexpr double kMarkLifted = 1.7;

    MTIImage outputImage() override;
};

}  // namespace qv
