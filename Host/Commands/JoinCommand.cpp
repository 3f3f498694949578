#include <memory>

#include "Host/CommandLine/CommandParser.h"
#include "Host/Farm/FarmJoin.h"

namespace qv::host {

void addJoinCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("join", "Puts the parts of a film together that edit --split has planned");
    auto job = std::make_shared<JoinJob>();
    auto folder = std::make_shared<std::string>();
    command.option("folder", *folder, "The plan's folder, with all parts").required();
    command.option("-o,--output", job->output, "Video file, of the plan's container").required();
    command.option("--plan", job->plan, "The plan; plan.json in the folder without");
    command.option("--project", job->project, "The project's file; where the plan was made without");
    job->overwrite.add(command);
    job->progress.add(command, "No progress bar and no notes");
    command.setAction([job, folder] {
        job->folder = *folder;
        joinParts(*job);
    });
}

}  // namespace qv::host
