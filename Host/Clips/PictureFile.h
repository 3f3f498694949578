#pragma once

#include <string>

#include "Platform/Media/Bitmap.h"
#include "Platform/Media/PixelBuffer.h"

namespace qv::host {

/// Whether a file begins like a PNG or a JPEG; false for what cannot be read and for "-".
bool isPictureFile(const std::string& path);

/// Fails as input.
Bitmap readPicture(const std::string& path);

/// How a picture will be written: by the extension .png, .jpg or .jpeg; "-" and devices take PNG. Fails as
/// usage for another extension, so that nothing is rendered in vain.
enum class PictureType { png, jpeg };
PictureType pictureTypeFor(const std::string& path);

/// The file appears when it is whole. Fails as output.
void writePicture(const Bitmap& bitmap, const std::string& path, PictureType type);

/// The red component, gray8: how a picture is read as a mask.
PixelBuffer grayFromPicture(const Bitmap& bitmap);

}  // namespace qv::host
