#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>

#include "Host/CommandLine.h"
#include "Host/Diagnostics.h"
#include "Host/Interrupt.h"

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

int report(qv::host::ExitCode code, std::string line) {
    for (char& c : line) {
        if (c == '\n') c = ' ';
    }
    fmt::print(stderr, "qvfilter: {}\n", line);
    return int(code);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace qv::host;
    // What another library throws on a thread of its own nobody can catch.
    std::set_terminate([] {
        fmt::print(stderr, "qvfilter: a fault that cannot be handled; memory may have run out\n");
        std::_Exit(int(ExitCode::internal));
    });
    CLI::App tool("Renders pictures and video through GPU effects.", "qvfilter");
    try {
        prepareSignals();
        keepLogLines();
        tool.set_version_flag("--version", "qvfilter " QV_VERSION);
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
        tool.footer(kFooter);
        requireKnownCommand(tool, argc, argv);
        tool.parse(argc, argv);
        return int(ExitCode::success);
    } catch (const CLI::Success& help) {
        return tool.exit(help);
    } catch (const CLI::ParseError& error) {
        return report(ExitCode::usage, std::string(error.what()) + "; see qvfilter --help");
    } catch (const Failure& failure) {
        return report(failure.code(), failure.what());
    } catch (const std::bad_alloc&) {
        return report(ExitCode::internal, "out of memory");
    } catch (const std::exception& error) {
        return report(ExitCode::internal, error.what());
    }
}
