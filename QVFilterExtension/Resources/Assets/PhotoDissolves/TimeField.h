#pragma once

#include "Platform/Media/Bitmap.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

/// When each pixel changes: any unit and any zero, only the order counts.
using TimeField = Raster<float>;

inline constexpr int kFieldWidth = 1280, kFieldHeight = 720;
/// Places are in heights of the picture, (0, 0) top left.
inline constexpr float kAspect = float(kFieldWidth) / kFieldHeight;

struct Place {
    float x, y;
};
inline Place placeOf(int px, int py) {
    return {(float(px) + 0.5f) / kFieldHeight, (float(py) + 0.5f) / kFieldHeight};
}

/// The field of `time(place)`.
template <class Time>
TimeField fieldOf(Time&& time) {
    TimeField field(kFieldWidth, kFieldHeight);
    parallelFor(kFieldHeight, [&](int y) {
        for (int x = 0; x < kFieldWidth; ++x) field.at(x, y) = time(placeOf(x, y));
    });
    return field;
}

/// Grey levels in the order of the times, earliest 0 (or 255 with `brightFirst`), each on about as many
/// pixels as any other, so that a dissolve runs evenly. The level is the mean of red, green and blue, which
/// differ by at most one code: so it is three times as fine as a code, and what is left is dithered.
Bitmap evenGreys(const TimeField& field, bool brightFirst);

}  // namespace qv::assets
