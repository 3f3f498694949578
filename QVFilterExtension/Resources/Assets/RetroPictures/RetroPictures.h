#pragma once

#include "Platform/Media/Bitmap.h"

namespace qv::assets {

// Dirt and wear, transparent where there is none. `index` chooses one of a set.

/// A few white specks with ragged outlines, 96×96: dust on a negative.
Bitmap whitePoint(int index);
/// A cloud of fine white dust with a lint or two, 192×192.
Bitmap whiteDust(int index);
/// Dark spots, brown where they are thin, 192×192.
Bitmap darkPoints(int index);
/// A stain of the developer, 512×512: translucent, of two hues, with a rim where it dried.
Bitmap variegated(int index);
/// Scratches along a film, 64×1024.
Bitmap scratches(int index);
/// A streak of a tape that lost its signal, 1024×24: white, broken, fading to the right.
Bitmap dropout(int index);

/// A line of light, 1024×64, with a white core and soft ends.
Bitmap redLine();
Bitmap blueLine();

/// Light on film, on black, 960×540: through the camera's back from the left, and a flare across the frame.
Bitmap backLight();
Bitmap flareLight();

/// A print's white border with a deckle edge, 600×600: a ninth of it is each corner, and its edges repeat
/// without a seam.
Bitmap printFrame();

}  // namespace qv::assets
