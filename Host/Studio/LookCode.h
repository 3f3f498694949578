#pragma once

#include <string>

#include "Host/Edit/Project.h"

namespace qv::host {

/// The looks of a project in C++, as text to copy: one function for each clip that has one, and one for what
/// lies over everything, which take a frame and its time and give the picture.
std::string lookCode(const Project& project);

}  // namespace qv::host
