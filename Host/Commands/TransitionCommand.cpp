#include "Host/Transition/TransitionOptions.h"

#include <map>
#include <memory>

#include "Host/CommandLine/CommandParser.h"

namespace qv::host {

namespace {

void transition(const TransitionOptions& options) {
    if (options.inputs.size() != 2) {
        fail(ExitCode::usage, "a transition has two inputs, the outgoing and the incoming one, not {}",
             options.inputs.size());
    }
    const bool isPicture = options.at || options.strip > 0;
    isPicture ? transitionPicture(options) : transitionClip(options);
}

}  // namespace

void addTransitionCommand(CommandParser& tool) {
    static const std::map<std::string, Fit> kFits{
        {"cover", Fit::cover}, {"contain", Fit::contain}, {"stretch", Fit::stretch}};
    const Command command = tool.addCommand("transition", "Leads from one clip to another");
    auto options = std::make_shared<TransitionOptions>();
    command.option("transition", options->transition, "CLASS, or CLASS:name=value:name=value").required();
    command
        .option("-i,--input", options->inputs,
                "Video or picture file; twice, the outgoing and the incoming one")
        .required();
    command
        .option("-o,--output", options->output,
                "Video file; with --at and --strip PNG or JPEG file; - for standard output")
        .required();
    const CommandOption at =
        command.option("--at", options->at, "One moment as a picture: progress, 0 to 1").range(0.0, 1.0);
    command.option("--strip", options->strip, "Moments side by side as a picture, both ends included")
        .range(2, 1000)
        .excludes(at);
    command.option("--duration", options->duration, "Of the transition, seconds").showDefault();
    command.option("--size", options->size, "Fit both into frames of WIDTHxHEIGHT");
    command.choice("--fit", options->fit, kFits, "How another shape comes into the frame");
    command.option("--still-seconds", options->stillSeconds, "How long a picture is shown; 3 without");
    options->encoding.add(command);
    options->overwrite.add(command);
    options->device.add(command);
    command.setAction([options] { transition(*options); });
}

}  // namespace qv::host
