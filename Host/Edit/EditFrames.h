#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "Host/Clips/FrameSource.h"
#include "Host/Edit/EditTimeline.h"

namespace qv::host {

/// The frames of a timeline's output by their numbers. The first `own` are the first clip's, at times of
/// their own; the rest come at the output's rate.
struct EditFrames {
    std::int64_t count = 0, own = 0;
    std::vector<double> ownSeconds;  ///< when the own ones begin
    double slotsBegin = 0;           ///< when the others do, seconds
    double end = 0;                  ///< of the last one, seconds

    /// When a frame begins.
    double secondsAt(const EditTimeline& timeline, std::int64_t index) const;
};

/// Counts the frames of a timeline that has begun, without decoding them. Fails as input where the files do
/// not tell.
EditFrames framesOf(EditTimeline& timeline);

/// A frame at the output's rate with its times; `begin` is when the first of those begins.
SourceFrame slotFrame(const EditTimeline& timeline, double begin, std::int64_t index);

/// Some of the frames in a row.
struct EditSpan {
    std::int64_t first = 0, count = kAll;
    double seconds = 0;  ///< when the first one begins
    std::int64_t own = kAll;
    double slotsBegin = 0;
    /// Told the time that each frame has in the whole, where its own times are to begin with 0.
    std::function<void(std::int64_t time, std::int64_t duration)> onFrame = {};

    static constexpr std::int64_t kAll = std::int64_t(1) << 60;
};

}  // namespace qv::host
