#pragma once

#include <string>
#include <vector>

#include "Host/Edit/EditExport.h"
#include "Host/Edit/EditOptions.h"

namespace qv::host {

/// A project file and the options of commands that render one.
struct EditRequest {
    std::string file;
    std::vector<std::string> values;
    FrameOptions frames;
    EditOutput output;

    /// All but the output's path.
    void add(const Command& command);
    /// Reads the project. Fails with all mistakes.
    Project project() const;
};

}  // namespace qv::host
