#pragma once

#include <filesystem>
#include <vector>

#include "Host/Gallery/GalleryScene.h"

namespace qv::host {

/// Writes contact sheets: "sheet.png", every class over the same frame, and "sheet-transitions.png", five
/// moments of each transition from 0 to 1; a sheet without cells is not written. `cell` is the size of a
/// picture of the first one. Fails as device or output.
void writeSheets(const std::filesystem::path& directory, const std::vector<const QVFilterClass*>& classes,
                 const GalleryScene& scene, PixelSize cell, MTIContext& context);

}  // namespace qv::host
