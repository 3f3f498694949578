#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Host/Clips/EncodingOptions.h"
#include "Host/CommandLine/Device.h"
#include "Host/Edit/EditFrames.h"
#include "Platform/Media/AudioMix.h"

namespace qv::host {

/// Where a project's clip goes, and how it is made.
struct EditOutput {
    std::string path;
    EncodingOptions encoding;
    OverwriteOptions overwrite;
    DeviceOptions device;
    bool subtitles = true;  ///< of a whole clip
};

/// A project whose files have been looked into, ready to be exported.
struct ExportSetup {
    std::unique_ptr<EditTimeline> timeline;  ///< begun
    ClipWriterOptions writing;
    std::unique_ptr<AudioMix> sound;               ///< nil where it is copied or left out
    std::shared_ptr<const SourceStreams> streams;  ///< what is copied of
    NoteSink note;
};

/// Fails as usage or input; what is lost is noted.
ExportSetup setUpExport(const Project& project, const EditOutput& output);

/// Told of every frame: how many are done, of how many (0: nobody knows), and where it is, seconds.
using ExportProgress = std::function<void(std::int64_t frames, std::int64_t total, double seconds)>;

/// Makes the clip at `output.path`, or a span of it. Progress goes to standard error where nothing else is
/// told. Returns the name of the device that rendered. Fails as the stages do.
std::string runExport(ExportSetup setup, const EditOutput& output, const ExportProgress& progress = {},
                      const EditSpan& span = {});

/// Renders a project into a clip. Everything that can be known beforehand is checked before anything is
/// decoded. Progress goes to standard error where nothing else is told. Fails with all mistakes.
void exportProject(const Project& project, const EditOutput& output, const ExportProgress& progress = {});

}  // namespace qv::host
