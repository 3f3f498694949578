#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Platform/Media/Bitmap.h"

namespace qv {

/// Reads a PNG or JPEG file by its content, not its name; "-" is standard input. 16-bit and palette pictures
/// are reduced to 8-bit RGBA, an EXIF orientation is applied. A damaged or cut-off file is refused. Nil on
/// failure, with one line that names file and cause in `error` when it is given.
Bitmap readImageFile(const std::string& path, std::string* error = nullptr);

/// The same of a file's bytes, which the error line calls a picture in memory.
Bitmap readImageBytes(std::span<const std::uint8_t> bytes, std::string* error = nullptr);

/// Writes a PNG with straight alpha; an opaque picture is written without an alpha channel. The file appears
/// under `path` only when it is whole; "-" is standard output. False with one line that names file and cause
/// in `error`.
bool writePNG(const Bitmap& bitmap, const std::string& path, std::string* error = nullptr);

/// The bytes of a baseline JPEG over black; quality 1..100. Empty on failure, with the cause in `error`.
std::vector<std::uint8_t> jpegBytes(const Bitmap& bitmap, int quality, std::string* error = nullptr);

/// Writes them. The file appears under `path` only when it is whole.
bool writeJPEG(const Bitmap& bitmap, const std::string& path, int quality, std::string* error = nullptr);

}  // namespace qv
