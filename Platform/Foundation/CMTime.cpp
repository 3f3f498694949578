#include "Platform/Foundation/CMTime.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qv {

CMTime CMTimeMakeWithSeconds(double seconds, std::int32_t preferredTimescale) {
    auto timescale = std::max(preferredTimescale, 1);
    double value = std::round(seconds * timescale);
    using Limits = std::numeric_limits<std::int64_t>;
    if (std::isnan(value)) return {0, timescale};
    if (value >= -double(Limits::min())) return {Limits::max(), timescale};
    if (value < double(Limits::min())) return {Limits::min(), timescale};
    return {std::int64_t(value), timescale};
}

CMTimeRange CMTimeRangeMakeWithSeconds(double start, double duration) {
    return {CMTimeMakeWithSeconds(start, kCMTimeRangeTimescale),
            CMTimeMakeWithSeconds(duration, kCMTimeRangeTimescale)};
}

}  // namespace qv
