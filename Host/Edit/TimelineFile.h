#pragma once

#include <string>

#include "Host/Edit/DocumentReader.h"
#include "Host/Edit/EditTimeline.h"
#include "Host/Edit/ProjectFile.h"

/// Projects as OpenTimelineIO's JSON (.otio), as editing programs exchange them.
///
/// Read are one video track of clips, gaps and transitions, the effects on clips, tracks and the whole, and
/// audio tracks: what lies under the same part of the same file is that clip's sound, another one becomes the
/// project's. Effects and transitions of this library stand by name in `effect_name` and `transition_type`,
/// their properties in the metadata under "qvfilter", effects with "from" and "to" there. What else a project
/// has stands in the metadata of the timeline and the clips, under the same name.
namespace qv::host {

/// Whether a document is of that kind.
bool isTimelineDocument(const DocumentValue& document);

/// Reads one. `note` is told a line for each thing that is left out: markers, and effects and transitions
/// that this library does not have, which become cuts.
Project parseTimeline(const DocumentValue& document, Mistakes& mistakes, const NoteSink& note);

/// The document of a project whose files are known.
std::string timelineText(const EditTimeline& timeline);

}  // namespace qv::host
