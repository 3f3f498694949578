#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Host/Clips/FrameFit.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/Device.h"
#include "Host/Clips/EncodingOptions.h"

namespace qv::host {

/// What was asked of `qvfilter transition`.
struct TransitionOptions {
    std::string transition;           ///< CLASS:name=value
    std::vector<std::string> inputs;  ///< the outgoing and the incoming one
    std::string output, size, duration = "1", stillSeconds;
    Fit fit = Fit::cover;
    std::optional<double> at;  ///< progress of one moment
    int strip = 0;             ///< moments side by side
    EncodingOptions encoding;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// One moment, or several side by side, as a picture.
void transitionPicture(const TransitionOptions& options);

/// The first clip, the transition, the second clip.
void transitionClip(const TransitionOptions& options);

}  // namespace qv::host
