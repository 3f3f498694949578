#pragma once

#include <memory>
#include <string>

#include "QVPersonMask/PersonMask.h"

namespace qv {

/// The masks of a clip's frames, in order, without the flicker of masks that are found one by one: where the
/// picture stands still, a frame's mask is averaged with its neighbours'. A mask depends on its own frame,
/// the four before and those that are looked ahead, on nothing else; what moves, or a cut, is left out of the
/// mean.
///
/// One thread at a time, and one for all sequences of one PersonMask. Memory does not grow with the clip.
class PersonMaskSequence {
  public:
    /// The most frames that can be looked ahead, and how many are looked back.
    static constexpr int kReach = 4;

    /// A frame's mask takes 0 to kReach later frames into account, too: 0 where it is needed at once, kReach
    /// for the steadiest.
    PersonMaskSequence(std::shared_ptr<PersonMask> network, int framesAhead);
    ~PersonMaskSequence();
    PersonMaskSequence(const PersonMaskSequence&) = delete;
    PersonMaskSequence& operator=(const PersonMaskSequence&) = delete;

    /// Takes the next frame; for `rotation` and what fails, see PersonMask::maskOf.
    bool add(const PixelBuffer& frame, int rotation = 0, std::string* error = nullptr);
    /// No more frames will come, so that the last ones need not wait for theirs.
    void finish();

    /// Whether the next mask can be taken.
    bool hasMask() const;
    /// The mask of the next frame, as maskOf gives it. Only where hasMask().
    PixelBuffer takeMask(std::string* error = nullptr);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace qv
