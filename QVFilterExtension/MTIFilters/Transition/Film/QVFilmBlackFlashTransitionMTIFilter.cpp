#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmBlackFlashTransitionMTIFilter.h"

#include <algorithm>

namespace qv {

namespace {

std::size_t slotAt(float progress) {
    constexpr std::size_t kSlots = QVFilmBlackFlashTransitionMTIFilter::kReel.size();
    return std::min(std::size_t(std::max(progress, 0.0f) * float(kSlots)), kSlots - 1);
}

}  // namespace

const QVFilterClass QVFilmBlackFlashTransitionMTIFilterClass{
    .name = "QVFilmBlackFlashTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "End of the reel",
    .help = "Cue dots, flashes of scratched black leader, and the next reel begins",
    .tags = {"leader", "cue mark", "flicker", "black", "strobe", "vintage"},
    .factory = makeFilter<QVFilmBlackFlashTransitionMTIFilter>,
};

char QVFilmBlackFlashTransitionMTIFilter::seen() const {
    return kReel[slotAt(progress())];
}

MTIParameters QVFilmBlackFlashTransitionMTIFilter::parameters() const {
    const char letter = seen();
    const bool slipped = letter == 'A' || letter == 'B';
    const float leader = letter == 'X' ? 2.0f : letter == 'x' ? 1.0f : 0.0f;
    const bool incoming = leader > 0 ? progress() >= 0.5f : letter == 'b' || letter == 'B';
    return {{"slot", float(slotAt(progress()))},
            {"incoming", incoming ? 1.0f : 0.0f},
            {"slipped", slipped ? kSlip : 0.0f},
            {"cue", letter == 'c' ? 1.0f : 0.0f},
            {"leader", leader}};
}

}  // namespace qv
