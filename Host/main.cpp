#include <cctype>
#include <exception>
#include <sstream>
#include <string>

#include "Host/CommandLine.h"
#include "Host/Diagnostics.h"
#include "Host/Interrupt.h"
#include "QVFilterExtension/QVFilterVersion.h"

#include <fmt/ranges.h>

namespace {

constexpr const char* kFooter =
    "Exit status: 0 done, 1 internal fault, 2 wrong usage, 3 bad input, 4 no usable device, 5 output not "
    "written,\n"
    "130 interrupted. Every failure is one line on standard error.";

/// Names a mistyped command, which the parser would only call a missing one.
void requireKnownCommand(const CLI::App& tool, int argc, char** argv) {
    if (argc < 2 || argv[1][0] == '-') return;
    const std::string name = argv[1];
    const auto isCommand = [&](const CLI::App* command) { return command->get_name() == name; };
    if (!tool.get_subcommands(isCommand).empty()) return;
    qv::host::fail(qv::host::ExitCode::usage, "there is no command '{}'; see qvfilter --help", name);
}

/// Parses and runs, with what the parser throws told as the tool's own failures.
void runTool(CLI::App& tool, int argc, char** argv) {
    using namespace qv::host;
    try {
        tool.parse(argc, argv);
    } catch (const CLI::Success& answer) {  // help or version
        std::ostringstream text;
        tool.exit(answer, text);
        writeStandardOutput(text.str());
    } catch (const CLI::ExtrasError&) {
        fail(ExitCode::usage, "not expected: {}; see qvfilter --help", fmt::join(tool.remaining(true), " "));
    } catch (const CLI::ParseError& error) {
        fail(ExitCode::usage, "{}; see qvfilter --help", error.what());
    }
}

int report(qv::host::ExitCode code, std::string line) {
    for (char& c : line) {
        if (std::iscntrl(static_cast<unsigned char>(c))) c = ' ';
    }
    qv::host::writeStandardError(fmt::format("qvfilter: {}\n", line));
    return int(code);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace qv::host;
    CLI::App tool("Renders pictures and video through GPU effects.", "qvfilter");
    try {
        keepStandardStreams();
        prepareSignals();
        keepLogLines();
        tool.set_version_flag("--version", fmt::format("qvfilter {}", qv::filterLibraryVersion()));
        tool.set_help_all_flag("--help-all", "Print the help of every command");
        tool.require_subcommand(1);
        addListCommand(tool);
        addShowCommand(tool);
        addGraphCommand(tool);
        addStillCommand(tool);
        addRenderCommand(tool);
        addTransitionCommand(tool);
        addSheetCommand(tool);
        addGalleryCommand(tool);
        addBenchCommand(tool);
        addDevicesCommand(tool);
        checkValues(tool);
        tool.footer(kFooter);
        requireKnownCommand(tool, argc, argv);
        runTool(tool, argc, argv);
        return int(ExitCode::success);
    } catch (const Failure& failure) {
        return report(failure.code(), failure.what());
    } catch (const std::exception& error) {
        return report(ExitCode::internal, error.what());
    }
}
