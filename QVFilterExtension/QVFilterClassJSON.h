#pragma once

#include <string>

#include "QVFilterCore/QVFilterClass.h"

namespace qv {

/// Everything that a class's record says, as one JSON object without line breaks: name, title, tags, kind,
/// superclass, category, help, levelCount, defaultEffectValue, isVideoOnly, isPhotoTimeConst,
/// fragmentFunction; "inputs" with name, role, type, required and help; "properties", inherited ones first,
/// with name, title, type, min, max, step, unit, driver ("user", "host", or "none" for what changes no
/// picture), default as a new filter has it, help, and for a selector "variants". What does not apply is
/// null. UTF-8. Thread-safe.
std::string filterClassJSON(const QVFilterClass& filterClass);

}  // namespace qv
