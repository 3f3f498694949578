#pragma once

#include "Platform/Media/Bitmap.h"

namespace qv::assets {

// What lies on film, on transparent ground; each index is another picture of its kind.

/// Dust of a print, 192×192: dark and soft where it lay on the print, bright where on the negative. 9 of
/// them.
Bitmap blackFilmDirt(int index);
/// Tiny bits of fibre, 128×128, cream. 9 of them.
Bitmap fineDirt(int index);
/// Specks, flakes and clusters, 128×128, mostly cream. 10 of them.
Bitmap lightDirt(int index);
/// A dark hair, 512×512: a thin curve that thins out towards its ends. 6 of them.
Bitmap filmHair(int index);
/// Scratches along the film, 64×1024, bright, broken and running out at both ends. 6 of them.
Bitmap filmScratch(int index);
/// A burn, 512×512: the lamp through a hole with a blistered brown rim. 6 of them.
Bitmap filmBurn(int index);

// Borders, 1080×1080, transparent in the middle. Between their corners, a third of a side long, edges are the
// same all along, so that they can be repeated.

/// A silver film's gate: black, its edge out of focus, with lint in the corners.
Bitmap blackFilmGate();
/// A home movie's gate: round corners, a rim of light that has crept under the metal.
Bitmap lightFilmGate();
/// A worn film's gate: chipped, with the rims of perforations.
Bitmap damagedFilmGate();

// Marks of displays, white with a dark rim.

/// The bracket of a top left corner, 256×256.
Bitmap displayCorner();
/// "AUTO" in a rounded box, 354×132.
Bitmap autoBadge();
/// A battery, two thirds full, 276×132.
Bitmap batterySign();
/// A red lamp, 128×128.
Bitmap recordingDot();
/// A box for three letters, 504×228.
Bitmap letterBox();
/// The sign of playing, 132×180.
Bitmap playTriangle();

/// What a tape does to a picture, 640×960: red is noise about a quarter, green the throw of a line about a
/// half, blue the loss of colour. 0 and 1 are calm, 2 to 7 troubled about the middle: a narrow and a wide
/// band of bad tracking, dropouts, a tear, a band without colour, and all of it.
Bitmap tapeTrouble(int index);

}  // namespace qv::assets
