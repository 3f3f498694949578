#pragma once

#include "Platform/Media/Bitmap.h"
#include "Platform/Media/PixelBuffer.h"

/// Pictures to try effects on when the user gave none: a person before a landscape.
namespace qv::host {

enum class SampleLight { day, dusk };

Bitmap samplePicture(int width, int height, SampleLight light);

/// The person of the picture, gray8: white on black.
PixelBuffer sampleMask(int width, int height);

}  // namespace qv::host
