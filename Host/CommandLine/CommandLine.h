#pragma once

#include <string>
#include <string_view>

#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/MediaTime.h"
#include "Host/CommandLine/StandardStreams.h"

/// What the commands' options share: how values are written, and what existing files allow.
namespace qv::host {

class Command;
class CommandOption;
class CommandParser;

// Each adds one command to the tool; parsing the command line runs it.
void addListCommand(CommandParser& tool);
void addShowCommand(CommandParser& tool);
void addGraphCommand(CommandParser& tool);
void addStillCommand(CommandParser& tool);
void addRenderCommand(CommandParser& tool);
void addTransitionCommand(CommandParser& tool);
void addEditCommand(CommandParser& tool);
void addMontageCommand(CommandParser& tool);
void addJoinCommand(CommandParser& tool);
void addFarmStatusCommand(CommandParser& tool);
void addStudioCommand(CommandParser& tool);
void addBenchCommand(CommandParser& tool);
void addSheetCommand(CommandParser& tool);
void addGalleryCommand(CommandParser& tool);
void addMaskCommand(CommandParser& tool);
void addExportCommand(CommandParser& tool);
void addDevicesCommand(CommandParser& tool);
void addCompletionCommand(CommandParser& tool);

struct PixelSize {
    int width = 0, height = 0;
};

/// "1280x720", sides 1 to kMaximumImageSide. `option` names it in the error. Fails as usage.
PixelSize parseSize(const std::string& text, const std::string& option = "--size");

/// Whether `name` matches a pattern with * and ?, or contains it when it has neither; case is ignored.
bool matchesPattern(std::string_view name, const std::string& pattern);

/// -y and -n: what becomes of an output that exists.
struct OverwriteOptions {
    bool yes = false, no = false;
    void add(const Command& command);
};

/// Fails unless `path` may be written: it is new, a device, a pipe or "-", or overwriting it was allowed, by
/// option or by an answer on a terminal. Nothing is opened.
void checkOutput(const std::string& path, const OverwriteOptions& overwrite);

/// As a shell takes it for one word.
std::string shellWord(const std::string& word);

/// The option for programs that listings share.
CommandOption addJSONFlag(const Command& command, bool& json);

}  // namespace qv::host
