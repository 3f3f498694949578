#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "QVFilterCore/QVFilterClass.h"

/// The classes as the video editor Kdenlive reads them: controls for the services of MLT.
namespace qv::host {

/// A class as an effect of the editor, or as a composition between two tracks: XML.
std::string kdenliveEffect(const QVFilterClass& filterClass);
std::string kdenliveComposition(const QVFilterClass& filterClass);

/// The editor's list of the groups that it shows effects in, with one more for each category. `groups` is the
/// list that the editor comes with. Empty when that is none.
std::string kdenliveGroups(std::string_view groups);

/// Every class that MLT has, below the editor's folder of data: "effects/CLASS.xml",
/// "transitions/CLASS.xml".
std::map<std::filesystem::path, std::string> kdenliveFiles();

}  // namespace qv::host
