#pragma once

#include "Platform/Media/Bitmap.h"

namespace qv::assets {

/// Crumpled paper as a field, 512×512, opaque, and without a seam when it is repeated. Red and green hold the
/// slope of the paper to the right and downwards, 0.5 where it lies flat; blue holds its fibres and the wear
/// along the folds, 0.5 where there is neither.
Bitmap paperNoise();

/// A soap bubble, 512×512: colours of a thin film, windows mirrored in it, a clear middle and a soft rim.
Bitmap soapBubble();

/// A star with a soft glow and faint diffraction spikes, 256×256, nothing left at its border.
Bitmap star();

/// A curl of ribbon that hangs down in two turns, 192×480, white with shading, to be tinted.
Bitmap ribbon();

/// Beaten and creased gold leaf, 768×768, opaque.
Bitmap goldLeaf();

/// A sparkle of four points in a faint glow, 256×256, white, nothing left at its border.
Bitmap sparkle();

/// A disc of light with a brighter rim, 128×128, white, nothing left at its border.
Bitmap lightDisc();

/// Noise of a camera's sensor, 256×256, opaque, and without a seam when it is repeated: red holds grain of a
/// pixel or two, green and blue blotches of nine, all about 0.5.
Bitmap sensorNoise();

/// Materials, 768×768, opaque: crumpled foil with the colours of a hologram, gold leaf with worn seams, white
/// marble with dark and golden veins.
Bitmap foilMaterial();
Bitmap goldMaterial();
Bitmap marbleMaterial();

}  // namespace qv::assets
