#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Host/Failure.h"
#include "Host/StandardStreams.h"

#include <CLI/CLI.hpp>

/// What the commands' options share: how values are written, and what existing files allow.
namespace qv::host {

// Each adds one command to the tool; parsing the command line runs it.
void addListCommand(CLI::App& tool);
void addShowCommand(CLI::App& tool);
void addGraphCommand(CLI::App& tool);
void addStillCommand(CLI::App& tool);
void addRenderCommand(CLI::App& tool);
void addTransitionCommand(CLI::App& tool);
void addBenchCommand(CLI::App& tool);
void addSheetCommand(CLI::App& tool);
void addGalleryCommand(CLI::App& tool);
void addDevicesCommand(CLI::App& tool);

struct PixelSize {
    int width = 0, height = 0;
};

/// "1280x720", sides 1 to kMaximumImageSide. Fails as usage.
PixelSize parseSize(const std::string& text);

/// Seconds, or [hours:]minutes:seconds. `option` names it in the error. Fails as usage.
double parseTime(const std::string& option, const std::string& text);

/// Whether `name` matches a pattern with * and ?, or contains it when it has neither; case is ignored.
bool matchesPattern(std::string_view name, const std::string& pattern);

/// -y and -n: what becomes of an output that exists.
struct OverwriteOptions {
    bool yes = false, no = false;
    void add(CLI::App& command);
};

/// Fails unless `path` may be written: it is new, a device, a pipe or "-", or overwriting it was allowed, by
/// option or by an answer on a terminal. Nothing is opened.
void checkOutput(const std::string& path, const OverwriteOptions& overwrite);

/// Has every command refuse values that the parser lets pass: empty ones, as a script's unset variable is,
/// and numbers that are not finite. To be called when all commands are there.
void checkValues(CLI::App& tool);

/// The option for programs that listings share.
CLI::Option* addJSONFlag(CLI::App& command, bool& json);

}  // namespace qv::host
