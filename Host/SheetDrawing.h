#pragma once

#include <string>

#include "Platform/Drawing/UIFont.h"
#include "Platform/Geometry/UIColor.h"

/// What labelled pictures share.
namespace qv::host {

inline const UIColor kPaper{0.11, 0.115, 0.125}, kInk{0.90, 0.90, 0.90}, kAccent{0.98, 0.74, 0.32};

/// The library's own font, so that a sheet looks the same on every machine; without it the machine's.
UIFont labelFont(double size);

/// The largest font size, up to `size`, at which the text fits.
UIFont fittingFont(const std::string& text, double size, double width);

}  // namespace qv::host
