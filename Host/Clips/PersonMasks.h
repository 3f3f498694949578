#pragma once

#include <memory>
#include <string>

#include "Host/Clips/MaskSource.h"

namespace qv {
class PersonMask;
}

/// Masks of people, where the tool was built with the component that finds them. All fail as usage where it
/// was not, and as input without a network.
namespace qv::host {

/// The finder of people with the network in that file; without a name with the one in $QVFILTER_PERSON_MODEL,
/// or else in the file that qvfilter-fetch-person-model leaves in the user's data folder.
std::shared_ptr<PersonMask> openPersonMask(const std::string& modelPath = {});

/// The people in each frame, found as the frames come.
std::unique_ptr<MaskSource> openPersonMaskSource();

}  // namespace qv::host
