#include "QVPersonMask/PersonMaskSequence.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <utility>
#include <vector>

#include "QVPersonMask/Private/PersonMaskState.h"

namespace qv {

struct PersonMaskSequence::State {
    std::shared_ptr<PersonMask> network;
    int framesAhead;
    std::deque<PersonEstimate> frames;  ///< as many as masks still depend on
    int current = 0;                    ///< of those, the one whose mask is next
    bool finished = false;
};

PersonMaskSequence::PersonMaskSequence(std::shared_ptr<PersonMask> network, int framesAhead)
    : state_(std::make_unique<State>(std::move(network), std::clamp(framesAhead, 0, kReach))) {}

PersonMaskSequence::~PersonMaskSequence() = default;

bool PersonMaskSequence::add(const PixelBuffer& frame, int rotation, std::string* error) {
    return withoutExceptions("the frame ", error, [&] {
        state_->frames.push_back(state_->network->state_->estimate(frame, rotation));
    });
}

void PersonMaskSequence::finish() {
    state_->finished = true;
}

bool PersonMaskSequence::hasMask() const {
    const int later = int(state_->frames.size()) - 1 - state_->current;
    return later >= (state_->finished ? 0 : state_->framesAhead);
}

PixelBuffer PersonMaskSequence::takeMask(std::string* error) {
    State& state = *state_;
    PixelBuffer mask;
    withoutExceptions("the frame ", error, [&] {
        const PersonEstimate& frame = state.frames[std::size_t(state.current)];
        const int last = std::min(int(state.frames.size()) - 1, state.current + state.framesAhead);
        std::vector<Neighbour> neighbours;
        for (int i = 0; i <= last; ++i) {
            if (i != state.current)
                neighbours.push_back({&state.frames[std::size_t(i)], std::abs(i - state.current)});
        }
        mask = refinedMask(frame, steadyLikelihood(frame, neighbours));
    });
    // Of a frame that was looked back from, no more than the small pictures are needed.
    state.frames[std::size_t(state.current)].luma.release();
    state.frames[std::size_t(state.current)].guide.release();
    if (state.current == kReach) {
        state.frames.pop_front();
    } else {
        ++state.current;
    }
    return mask;
}

}  // namespace qv
