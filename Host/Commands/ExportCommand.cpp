#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Listing/KdenliveFiles.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::string editor, directory;
    OverwriteOptions overwrite;
};

constexpr std::string_view kGroups = "kdenliveeffectscategory.rc";

/// The list of groups that the installed editor comes with; empty without one.
std::string installedGroups() {
    const char* set = std::getenv("XDG_DATA_DIRS");
    std::istringstream folders(set && *set ? set : "/usr/local/share:/usr/share");
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::string groups = readFile(fs::path(folder) / "kdenlive" / kGroups);
        if (!groups.empty()) return groups;
    }
    return {};
}

void exportKdenlive(const fs::path& directory, const OverwriteOptions& overwrite) {
    std::map<fs::path, std::string> files = kdenliveFiles();
    // The editor reads the user's own list instead of the one that it comes with.
    if (const std::string groups = kdenliveGroups(installedGroups()); !groups.empty())
        files[kGroups] = groups;
    else
        writeNote("the editor's list of groups is not there: effects will stand outside its groups");
    for (const char* folder : {"effects", "transitions"}) makeFolder(directory / folder);
    std::erase_if(files, [&](const auto& file) { return readFile(directory / file.first) == file.second; });
    for (const auto& [name, text] : files) checkOutput(directory / name, overwrite);
    const DeferInterrupts defer;  // so short that a signal may wait for it
    for (const auto& [name, text] : files) writeFile(directory / name, text);
}

}  // namespace

void addExportCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("export", "Writes what an editor needs to show the classes' controls");
    auto options = std::make_shared<Options>();
    command.option("editor", options->editor, "Which editor").required().oneOf({"kdenlive"});
    command.option("directory", options->directory, "Its folder of data").required();
    options->overwrite.add(command);
    command.setAction([options] { exportKdenlive(options->directory, options->overwrite); });
}

}  // namespace qv::host
