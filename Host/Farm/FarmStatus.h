#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Host/CommandLine/JSON.h"
#include "Host/Farm/FarmFolder.h"

namespace qv::host {

enum class PartState {
    waiting,  ///< nobody has begun it
    running,
    stalled,  ///< it was begun, and nothing has been heard of it for a while
    failed,
    done,
};

struct PartStatus {
    FarmPart part;
    PartState state = PartState::waiting;
    std::int64_t frames = 0;  ///< that are done
    double seconds = 0;       ///< that it has taken
    std::string host, failure;
    int attempts = 0;

    /// Frames a second; 0 when unknown.
    double rate() const { return seconds > 0 ? double(frames) / seconds : 0; }
};

/// All parts of a plan as their files in the folder tell; whole ones are not read again.
struct FarmStatus {
    std::vector<PartStatus> parts;

    int count(PartState state) const;
    bool isDone() const { return count(PartState::done) == int(parts.size()); }
    /// Of pictures.
    std::int64_t framesDone() const;
    /// Seconds until all is done, as fast as it goes now; nothing when nobody works on it.
    std::optional<double> secondsLeft() const;
};

FarmStatus statusOf(const FarmPlan& plan, const std::filesystem::path& folder);

std::string statusText(const FarmPlan& plan, const FarmStatus& status);
Json statusToJSON(const FarmPlan& plan, const FarmStatus& status);

}  // namespace qv::host
