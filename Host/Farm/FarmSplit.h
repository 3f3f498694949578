#pragma once

#include <filesystem>

#include "Host/Farm/FarmPlan.h"

namespace qv::host {

/// A project, the options that hold for every part, and how it is divided.
struct SplitJob {
    EditRequest request;
    std::vector<std::string> words;  ///< the options again, without those of the machine
    int parts = 1;                   ///< of pictures
    std::filesystem::path folder;
};

/// Divides a film into spans of nearly as many frames, and its sound, and checks all that can be known before
/// anything is rendered; nothing is written. A border that lies in a transition moves out of it where that
/// is near: both clips are decoded on both of its sides otherwise. Fails as usage or input.
FarmPlan makePlan(const SplitJob& job);

}  // namespace qv::host
