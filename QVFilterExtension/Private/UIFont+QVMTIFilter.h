#pragma once

#include <string>

#include "Platform/Drawing/UIFont.h"

namespace qv {

/// The font of a file in the resource bundle, registered with the process on first use. Its PostScript name
/// must be the file name without its extension ("QVSans-Regular.ttf" holds QVSans-Regular). What cannot be
/// had is replaced by the system font of the same size; a file that cannot be registered is logged.
/// Thread-safe.
UIFont qv_fontWithFileName(const std::string& fileName, double size);

}  // namespace qv
