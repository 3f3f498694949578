#pragma once

#include "QVFilterExtension/Resources/Assets/Fonts/TrueTypeFile.h"

namespace qv::assets {

/// A clean geometric sans-serif for labels and text on pictures.
FontDescription qvSans();
/// A squarish technical face, as camera displays have it.
FontDescription aldrich();
/// The dots of a video recorder's display, all characters of one width; small letters look like capitals.
FontDescription vcrOsdMono();

}  // namespace qv::assets
