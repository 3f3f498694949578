#pragma once

#include "Platform/Drawing/UIImage.h"

namespace qv {

/// A copy of the part of a picture that lies in the given pixels, all of them inside it.
Bitmap croppedBitmap(const Bitmap& source, int x, int y, int width, int height);

/// The picture at another size, which is at least 1 × 1: a weighted mean over two target pixels along an axis
/// that shrinks, linear between neighbours along one that grows. Nothing from outside the picture is mixed
/// in.
Bitmap resampledBitmap(const Bitmap& source, int width, int height);

/// A resizable picture filled out to width × height pixels. One of its points becomes `pixelsPerPointX` ×
/// `pixelsPerPointY` pixels, which sizes the caps and the repeated tiles; both are rounded to whole pixels,
/// so that no seam shows. Caps that do not fit are shrunk in proportion.
Bitmap resizedByCaps(const UIImage& image, int width, int height, double pixelsPerPointX,
                     double pixelsPerPointY);

}  // namespace qv
