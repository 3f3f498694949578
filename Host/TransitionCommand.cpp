#include "Host/TransitionCommand.h"

#include <map>
#include <memory>

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

void addTransitionCommand(CLI::App& tool) {
    static const std::map<std::string, Fit> kFits{
        {"cover", Fit::cover}, {"contain", Fit::contain}, {"stretch", Fit::stretch}};
    CLI::App* command = tool.add_subcommand("transition", "Leads from one clip to another");
    auto options = std::make_shared<TransitionOptions>();
    command->add_option("transition", options->transition, "CLASS, or CLASS:name=value:name=value")
        ->required();
    command
        ->add_option("-i,--input", options->inputs,
                     "Video or picture file; twice, the outgoing and the incoming one")
        ->allow_extra_args(false)
        ->required();
    command
        ->add_option("-o,--output", options->output,
                     "Video file; with --at and --strip PNG or JPEG file; - for standard output")
        ->required();
    CLI::Option* at = command->add_option("--at", options->at, "One moment as a picture: progress, 0 to 1")
                          ->check(CLI::Range(0.0, 1.0));
    command->add_option("--strip", options->strip, "Moments side by side as a picture, both ends included")
        ->check(CLI::Range(2, 1000))
        ->excludes(at);
    command->add_option("--duration", options->duration, "Of the transition, seconds")->capture_default_str();
    command->add_option("--size", options->size, "Fit both into frames of WIDTHxHEIGHT");
    command->add_option("--fit", options->fit, "How another shape comes into the frame")
        ->transform(CLI::CheckedTransformer(kFits, CLI::ignore_case));
    command->add_option("--still-seconds", options->stillSeconds, "How long a picture is shown; 3 without");
    options->encoding.add(*command);
    options->overwrite.add(*command);
    options->device.add(*command);
    command->callback([options] { transition(*options); });
}

}  // namespace qv::host
