#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Host/Device.h"
#include "Host/FrameFit.h"

namespace qv::host {

/// What the forms of `qvfilter transition` have in common.
struct TransitionOptions {
    std::string transition;           ///< CLASS:name=value
    std::vector<std::string> inputs;  ///< the outgoing and the incoming one
    std::string output, size, duration = "1";
    std::string stillSeconds;
    Fit fit = Fit::cover;
    std::optional<double> at;  ///< progress of one moment
    int strip = 0;             ///< moments side by side
    OverwriteOptions overwrite;
    DeviceOptions device;

    double seconds() const;
};

/// One moment, or several side by side, as a picture.
void transitionPicture(const TransitionOptions& options);

}  // namespace qv::host
