#pragma once

#include <map>
#include <string>
#include <vector>

#include "Host/CommandLine/CommandLine.h"
#include "Platform/Drawing/UIImage.h"
#include "QVFilterCore/QVFilterClass.h"

/// Contact sheets: labelled pictures of classes under the names of their categories.
namespace qv::host {

struct SheetCell {
    std::string title, name;
    UIImage picture;  ///< scaled into the cell, centred; nil where the class gives none of the inputs
};

/// In the order of the categories.
using SheetGroups = std::map<QVFilterCategory, std::vector<SheetCell>>;

/// Cells of one size in rows of up to `columns`. Fails as usage when the sheet would be too large.
Bitmap drawSheet(const SheetGroups& groups, PixelSize cell, int columns);

}  // namespace qv::host
