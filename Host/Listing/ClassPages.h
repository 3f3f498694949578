#pragma once

#include <string>

#include "Host/CommandLine/CommandLine.h"

namespace qv::host {

/// Writes "index.md" and a page per category, such as "mosaic.md", into `directory`, which is made when it
/// does not exist. All from the class objects, the same on every machine. A page that already says this is
/// left alone, others are replaced as `overwrite` allows. Fails as output.
void writeClassPages(const std::string& directory, const OverwriteOptions& overwrite);

}  // namespace qv::host
