#pragma once

#include <filesystem>
#include <string>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/Progress.h"

namespace qv::host {

/// Parts that become a film.
struct JoinJob {
    std::filesystem::path folder;
    std::string plan;     ///< empty: in the folder
    std::string project;  ///< empty: where the plan has it
    std::string output;
    OverwriteOptions overwrite;
    ProgressOptions progress;
};

/// Puts the packets of all parts into one file, which is what rendering the whole gives: nothing is encoded.
/// Every part is checked before anything is written. Fails as input and names the part that is missing, or is
/// not what the plan wants; fails as output.
void joinParts(const JoinJob& job);

}  // namespace qv::host
