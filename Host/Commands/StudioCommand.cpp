#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/Edit/ProjectFile.h"
#include "Host/Studio/StudioSession.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::vector<std::string> paths;
    std::string folder = ".";
    bool noOpen = false;
    StudioChoice studio;
};

bool isProject(const std::string& path) {
    const fs::path extension = fs::path(path).extension();
    return extension == ".json" || extension == ".otio";
}

Project projectOf(const std::vector<std::string>& paths) {
    if (paths.size() == 1 && isProject(paths[0])) {
        Mistakes mistakes;
        Project project = parseProject(paths[0], readDocumentText(paths[0]), {}, mistakes, writeNote);
        mistakes.check();
        if (project.sound)
            fail(ExitCode::usage, "'{}' has a sound track, which the studio cannot show", paths[0]);
        return project;
    }
    Project project;
    for (const std::string& path : paths) {
        if (path == "-") fail(ExitCode::usage, "the studio's clips are files, not standard input");
        project.clips.push_back({.path = path});
    }
    return project;
}

/// Whether there is a screen to show a browser on.
bool hasDisplay() {
    return std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY");
}

void openBrowser(const std::string& address) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    std::string program = "xdg-open", argument = address;
    char* arguments[] = {program.data(), argument.data(), nullptr};
    pid_t id = 0;
    const int error = ::posix_spawnp(&id, "xdg-open", &actions, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) writeNote("no browser could be opened; the address is above");
}

void studio(Options& options) {
    options.studio.folder = fs::absolute(options.folder).lexically_normal();
    if (!fs::is_directory(options.studio.folder))
        fail(ExitCode::output, "'{}' is no folder", options.studio.folder.string());
    options.studio.project = projectOf(options.paths);
    const DeferInterrupts defer;
    StudioSession session(std::move(options.studio));
    writeStandardOutput(session.server().address() + "\n");
    if (!options.noOpen && hasDisplay()) openBrowser(session.server().openingAddress());
    session.run();
}

}  // namespace

void addStudioCommand(CommandParser& tool) {
    const Command command = tool.addCommand("studio", "Opens clips in a browser, to find a look by hand");
    auto options = std::make_shared<Options>();
    command.option("clips", options->paths, "Video and picture files, one after another; or a project")
        .required();
    command.option("-o,--output", options->folder, "Folder that exports go to").showDefault();
    command.option("--port", options->studio.port, "Port on 127.0.0.1; a free one without").range(1, 65535);
    command.flag("--no-open", options->noOpen, "Open no browser; the address is printed all the same");
    command.option("--mask", options->studio.mask, kMaskHelp);
    options->studio.output.encoding.add(command);
    options->studio.output.device.add(command);
    command.setAction([options] { studio(*options); });
}

}  // namespace qv::host
