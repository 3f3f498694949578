#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Host/Edit/Project.h"

namespace qv::host {

/// What a montage is made of.
struct MontageChoice {
    std::vector<std::string> paths;  ///< clips and pictures
    double each = 2.5;               ///< seconds that each is seen; a clip that is shorter is seen whole
    std::vector<std::string> transitions;  ///< patterns of classes; all without
    MediaTime overlap{0.6};                ///< of the transitions
    std::uint32_t seed = 1;
};

/// The clips one after another, with transitions between them that the seed chooses: no two in a row are the
/// same where there is a choice. Looks up how long the clips are. Fails as usage or input.
std::vector<ProjectClip> montageClips(const MontageChoice& choice);

}  // namespace qv::host
