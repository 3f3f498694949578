#pragma once

#include "Platform/Media/Bitmap.h"

namespace qv::assets {

// Transparent where the picture shows; 1920×1080, but for the lens, which is square.

/// 35 mm film for still pictures: perforations above and below, frame numbers. Its corners are 96×230 pixels;
/// between them, the sides of the gate can be stretched.
Bitmap stillFilmFrame();
/// The same film, closer, with the maker's words, frame numbers and a bar code along its edges.
Bitmap printedFilmFrame();
/// 35 mm cine film, which runs downwards: four perforations on either side of a frame.
Bitmap cineFilmFrame();
/// Narrow film of home movies: one large perforation on the left, on the line between
/// two frames, strongly rounded corners. Corners are 300×300 pixels; between them, the sides can be
/// stretched.
Bitmap homeFilmFrame();

/// The view through a lens: a round opening with a coloured rim in an engraved barrel.
Bitmap lensFrame();
/// A camera's viewfinder: corners, focus brackets, recording mark, time code and exposure scale.
Bitmap viewfinderFrame();

}  // namespace qv::assets
