#pragma once

#include <vector>

#include "QVFilterExtension/Private/UIImage+QVMTIFilter.h"

namespace qv {

/// Where a picture is cut along one side, in its own points: its first part keeps its shape, the second is
/// stretched or left out, the third keeps its shape, and so on.
using FittingCuts = std::vector<double>;

/// A picture redrawn to `size` points, `factor` times as large; the parts that may be stretched take up what
/// is left. Without cuts a side is scaled as a whole.
UIImage fittedByCuts(const UIImage& image, CGSize size, double factor, const FittingCuts& xCuts,
                     const FittingCuts& yCuts);

/// A film's frame drawn for frames of 1920×1080: how its edges lie.
struct FilmGauge {
    double pitch;   ///< from one perforation to the next, points; the picture is a whole number of them long
    double band;    ///< width of film on either side of the picture, points
    bool runsDown;  ///< else across
};

/// A film's frame for any frame of the clip. A whole number of perforations goes into the frame, so that
/// copies adjoin, and each band takes up at most 0.2 of the frame.
UIImage fittedFilm(const UIImage& film, CGSize size, const FilmGauge& gauge);

}  // namespace qv
