#pragma once

#include <string_view>

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFilmBlackFlashTransitionMTIFilterClass;

/// A reel that ends: cue dots in the corner, then black leader flashes between the frames, scratched and
/// punched, and the next reel begins with frames among the leader.
///
/// What is seen stands in `kReel`, one letter for each of equal parts of progress. Leader is nearly black,
/// with grain, specks, three scratches, a trace of the nearer clip at 0.16 of its light, and a punched hole
/// of radius 150 (1/1080 of the shorter side) that lets the lamp through; all but the trace change with each
/// letter.
class QVFilmBlackFlashTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmBlackFlashTransitionMTIFilter(
        const QVFilterClass& filterClass = QVFilmBlackFlashTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// a, b: the outgoing and the incoming clip; A, B: the same, slipped down by `kSlip` of a frame, over
    /// exposed; c: the outgoing clip with a cue dot; x: leader; X: leader with its hole.
    static constexpr std::string_view kReel = "aaaccaacAxaAxxbXxaXxbxXBxbxBbbbbb";
    static constexpr float kSlip = 0.14f;  ///< frames

    /// The letter of the moment.
    char seen() const;
    /// "slot" (number of the letter), "incoming", "slipped", "cue", "leader" (0 or 1, the hole 2).
    MTIParameters parameters() const override;
};

}  // namespace qv
