#pragma once

#include <cmath>
#include <cstdint>

namespace qv {

/// Length of the frames that the retro flashes are counted in, seconds.
inline constexpr double kRetroFrameSeconds = 0.03333333333333333;

/// Number of the frame that a time lies in, negative before 0. Times without end are the last frame that can
/// be told from its neighbours, times that are not numbers the first.
inline std::int64_t retroFrameAt(double seconds) {
    constexpr double kLast = 9007199254740992.0;  // 2⁵³
    const double frame = std::floor(seconds / kRetroFrameSeconds);
    if (std::isnan(frame)) return 0;
    return std::int64_t(frame < -kLast ? -kLast : frame > kLast ? kLast : frame);
}

}  // namespace qv
