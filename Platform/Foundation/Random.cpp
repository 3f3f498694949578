#include "Platform/Foundation/Random.h"

namespace qv {

SeededRandom::SeededRandom(std::uint32_t seed) {
    // The table is filled by the minimal-standard generator, word' = 16807 · word mod (2^31 − 1), computed
    // with Schrage's division so that no product overflows. Words stay signed: seeds of 2^31 and above count
    // as negative.
    auto word = seed == 0 ? 1 : std::int32_t(seed);
    for (auto& entry : state_) {
        entry = std::uint32_t(word);
        word = 16807 * (word % 127773) - 2836 * (word / 127773);
        if (word < 0) word += 2147483647;
    }
    constexpr int kDiscarded = 310;
    for (int i = 0; i < kDiscarded; ++i) next();
}

std::int32_t SeededRandom::next() {
    auto sum = state_[front_] += state_[rear_];
    if (++front_ == int(state_.size())) front_ = 0;
    if (++rear_ == int(state_.size())) rear_ = 0;
    return std::int32_t(sum >> 1);
}

std::int32_t randomFromSeed(std::uint32_t seed) {
    return SeededRandom(seed).next();
}

}  // namespace qv
