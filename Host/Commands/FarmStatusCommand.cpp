#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/Farm/FarmStatus.h"

namespace qv::host {

namespace {

struct Options {
    std::string folder, plan;
    bool json = false;
};

void farmStatus(const Options& options) {
    const std::filesystem::path folder(options.folder);
    const FarmPlan plan = readPlan(planPath(folder, options.plan));
    const FarmStatus status = statusOf(plan, folder);
    writeStandardOutput(options.json ? dump(statusToJSON(plan, status)) : statusText(plan, status));
    if (!status.isDone())
        fail(ExitCode::input, "{} of {} parts are not there yet",
             int(status.parts.size()) - status.count(PartState::done), status.parts.size());
}

}  // namespace

void addFarmStatusCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("farm-status", "Tells how far the parts of a film are that edit --split has planned");
    auto options = std::make_shared<Options>();
    command.option("folder", options->folder, "The plan's folder").required();
    command.option("--plan", options->plan, "The plan; plan.json in the folder without");
    addJSONFlag(command, options->json);
    command.setAction([options] { farmStatus(*options); });
}

}  // namespace qv::host
