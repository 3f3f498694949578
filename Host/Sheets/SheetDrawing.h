#pragma once

#include <string>
#include <vector>

#include "Platform/Drawing/UIFont.h"
#include "Platform/Geometry/UIColor.h"
#include "Platform/Media/Bitmap.h"

/// What labelled pictures share.
namespace qv::host {

inline const UIColor kPaper{0.11, 0.115, 0.125}, kInk{0.90, 0.90, 0.90}, kAccent{0.98, 0.74, 0.32};

/// The library's own font, so that a sheet looks the same on every machine; without it the machine's.
UIFont labelFont(double size);

/// The largest font size, up to `size`, at which the text fits.
UIFont fittingFont(const std::string& text, double size, double width);

/// Moments of a transition side by side, each drawn into `frame` pixels, with its progress below it. Nil when
/// that is too wide.
struct StripFrame {
    double progress;
    Bitmap picture;
};
Bitmap drawStrip(const std::vector<StripFrame>& frames, CGSize frame);

}  // namespace qv::host
