#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVPicMoveTransitionMTIFilterClass;

/// Two pictures as upright panels in a dark room with a mirroring floor: the view draws back, the outgoing
/// one moves off to the left and turns to the side, the incoming one comes from the right and turns to the
/// front.
///
/// Lengths are halves of the frame's height; the view is `kFocus` away from a panel that fills the frame, and
/// `kFar` times as far at progress 0.5. A panel that has `s` of its way left, 0 to 1 from 0.12 to 0.88,
/// stands `s (kNear + kWiden s)` frame widths from the middle and is turned by `kTurn` until half of the way.
class QVPicMoveTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVPicMoveTransitionMTIFilter(
        const QVFilterClass& filterClass = QVPicMoveTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    static constexpr float kFocus = 2.4f;  ///< distance of a panel that fills the frame, halves of its height
    static constexpr float kNear = 0.3f, kWiden = 0.85f;  ///< frame widths
    static constexpr float kTurn = 0.86f;                 ///< radians
    static constexpr float kFar = 1.6f;                   ///< times as far in the middle

    /// "ratio", "focus"; for the outgoing and the incoming panel "panel1" and "panel2": its middle right of
    /// the view, its distance, cosine and sine of its turn; "room" (light of the room, 0..1).
    MTIParameters parameters() const override;
};

}  // namespace qv
