#pragma once

#include <memory>
#include <string>

namespace qv {
class PersonMask;
}

namespace qv::host {

/// Where the network that finds people is looked for: $QVFILTER_PERSON_MODEL, or else the file that
/// qvfilter-fetch-person-model leaves in the user's data folder.
std::string personModelPath();

/// The finder of people with the network in that file, or where it is looked for. Fails as input, and as
/// usage where the tool was built without it.
std::shared_ptr<PersonMask> openPersonMask(const std::string& modelPath = {});

}  // namespace qv::host
