#include <cctype>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Diagnostics.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/CommandLine/StandardStreams.h"
#include "QVFilterExtension/QVFilterVersion.h"

namespace {

constexpr const char* kFooter =
    "Exit status: 0 done, 1 internal fault, 2 wrong usage, 3 bad input, 4 no usable device, 5 output not "
    "written,\n"
    "130 interrupted. Every failure is one line on standard error.";

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
    // What another library throws on a thread of its own nobody can catch.
    std::set_terminate([] {
        writeStandardError("qvfilter: a fault that cannot be handled; memory may have run out\n");
        std::_Exit(int(ExitCode::internal));
    });
    try {
        keepStandardStreams();
        prepareSignals();
        keepLogLines();
        CommandParser tool("qvfilter", "Renders pictures and video through GPU effects.", QV_FILTER_VERSION,
                           kFooter);
        addListCommand(tool);
        addShowCommand(tool);
        addGraphCommand(tool);
        addStillCommand(tool);
        addRenderCommand(tool);
        addTransitionCommand(tool);
        addEditCommand(tool);
        addMontageCommand(tool);
        addJoinCommand(tool);
        addFarmStatusCommand(tool);
        addStudioCommand(tool);
        addSheetCommand(tool);
        addGalleryCommand(tool);
        addBenchCommand(tool);
        addMaskCommand(tool);
        addExportCommand(tool);
        addDevicesCommand(tool);
        addCompletionCommand(tool);
        tool.run(argc, argv);
        return int(ExitCode::success);
    } catch (const Failure& failure) {
        return report(failure.code(), failure.what());
    } catch (const std::bad_alloc&) {
        return report(ExitCode::internal, "out of memory");
    } catch (const std::exception& error) {
        return report(ExitCode::internal, error.what());
    }
}
