#pragma once

#include "Platform/Media/Bitmap.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

/// A strip of translucent paper tape with toothed ends. 420×120.
Bitmap tape();
/// A postage stamp with perforated edges and a window of this size in its middle, its value and country
/// printed over the window's corners; `margin` pixels lie around the window.
Bitmap stampFraming(int windowWidth, int windowHeight, int margin);
/// A round postmark and the waves that cancel the stamp, in ink. 760×380.
Bitmap postmark();
/// Plain card that fills a square of this side.
Bitmap page(int side, Vec3 color, std::uint32_t seed);

}  // namespace qv::assets
