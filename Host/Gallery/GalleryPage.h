#pragma once

#include <filesystem>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/JSON.h"

/// The page of a gallery: files that are the same for every gallery, and gallery.js with the data.
namespace qv::host {

/// Fails unless a page may be written into `directory`: it has none, it has a gallery's, or replacing another
/// one was allowed.
void checkPage(const std::filesystem::path& directory, const OverwriteOptions& overwrite);

/// Writes index.html with what it loads. The data is a script, since a page from the disk may not fetch
/// files. Fails as output.
void writePage(const std::filesystem::path& directory, const Json& data);

}  // namespace qv::host
