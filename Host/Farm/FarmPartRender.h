#pragma once

#include <string>
#include <vector>

#include "Host/Farm/FarmPlan.h"

namespace qv::host {

/// A part to be rendered.
struct PartJob {
    std::string project;  ///< the file
    int part = 0;
    std::string output;                     ///< the part's file, or its folder
    std::string plan;                       ///< empty: beside the output
    std::vector<std::string> machineWords;  ///< options that only concern this machine
};

/// Renders a part, unless it is there already. It appears under its name when it is whole, with a record of
/// what it was made of; any number of processes may render the same one. Fails as usage, as input where the
/// project is not that of the plan, and as rendering does.
void renderPart(const PartJob& job);

}  // namespace qv::host
