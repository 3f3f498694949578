#pragma once

#include "Platform/Media/Bitmap.h"

namespace qv::assets {

inline constexpr int kFilmLeaks = 27, kRedFilmLeaks = 23;

/// One of the leaks that a light film shows in sequences of tenths of a second, light on black: 23 red ones,
/// then 4 blue ones.
Bitmap filmLeak(int index);

}  // namespace qv::assets
