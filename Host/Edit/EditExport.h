#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Host/Clips/EncodingOptions.h"
#include "Host/CommandLine/Device.h"
#include "Host/Edit/EditTimeline.h"

namespace qv::host {

/// Where a project's clip goes, and how it is made.
struct EditOutput {
    std::string path;
    EncodingOptions encoding;
    OverwriteOptions overwrite;
    DeviceOptions device;
    bool subtitles = true;  ///< of a whole clip
};

/// Told of every frame: how many are done, of how many (0: nobody knows), and where it is, seconds.
using ExportProgress = std::function<void(std::int64_t frames, std::int64_t total, double seconds)>;

/// Renders a project into a clip. Everything that can be known beforehand is checked before anything is
/// decoded. Progress goes to standard error where nothing else is told. Fails with all mistakes.
void exportProject(const Project& project, const EditOutput& output, const ExportProgress& progress = {});

}  // namespace qv::host
