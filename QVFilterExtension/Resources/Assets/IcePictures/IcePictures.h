#pragma once

#include "Platform/Media/Bitmap.h"

namespace qv::assets {

/// Frost on a window: a sheet at the borders, ferns of crystals that grow inwards from it and thin out
/// towards the middle. Alpha is how thick it is.
Bitmap frost(int width, int height);

/// A ball of glass on a turned foot, 1024×1024: mirrored windows, a dark rim, a drift of snow inside at its
/// bottom. The glass lies about (0.5, 0.45) with a radius of 0.42 of the side; the rest of it is clear.
Bitmap glassBall();

}  // namespace qv::assets
