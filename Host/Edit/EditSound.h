#pragma once

#include <memory>

#include "Host/Edit/EditTimeline.h"
#include "Platform/Media/AudioMix.h"

namespace qv::host {

/// The sound of a timeline: its clips', cross-faded where they overlap, and the project's own. At the rate
/// and in the layout of the first that has any. Nil when none has. Fails as input.
std::unique_ptr<AudioMix> openSound(const EditTimeline& timeline);

}  // namespace qv::host
