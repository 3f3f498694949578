#include "Host/Edit/EditOptions.h"

namespace qv::host {

void FrameOptions::add(const Command& command, bool rate) {
    command.option("--size", size_, "Fit everything into frames of WIDTHxHEIGHT");
    command.option("--fit", fit_, "How another shape comes into the frame")
        .oneOf({"cover", "contain", "stretch"});
    if (rate) command.option("--fps", rate_, "Frames a second of the output, as 25 or 30000/1001");
}

void FrameOptions::apply(Project& project) const {
    if (!size_.empty()) project.size = parseSize(size_);
    if (!rate_.empty()) project.rate = parseRate("--fps", rate_);
    if (!fit_.empty()) project.fit = fitNamed(fit_).value();
}

void PartOptions::add(const Command& command, const char* duration) {
    command.option("--from", from_,
                   "Where the part of the input begins: seconds, [h:]m:s, or frames as 120f");
    const CommandOption to = command.option("--to", to_, "Where it ends");
    command.option("--duration", duration_, duration).excludes(to);
}

void PartOptions::apply(ProjectClip& clip) const {
    clip.from = parseGivenTime("--from", from_);
    clip.to = parseGivenTime("--to", to_);
    clip.duration = parseGivenTime("--duration", duration_);
    if (clip.duration && clip.duration->value <= 0) fail(ExitCode::usage, "--duration is not above 0");
}

void InputList::add(const Command& command) {
    command.option("-i,--input", paths_, "Video or picture file; twice, the outgoing and the incoming one")
        .required();
    command.option("--from", from_,
                   "Where the part of the input before it begins: seconds, [h:]m:s, or 120f");
    command.option("--to", to_, "Where it ends");
}

std::vector<ProjectClip> InputList::clips(const Command& command) const {
    std::vector<ProjectClip> clips;
    std::size_t from = 0, to = 0;
    for (const std::string& name : command.order()) {
        if (name == "--input") {
            const std::string& path = paths_[clips.size()];
            clips.push_back({.path = path});
        } else if (name == "--from" || name == "--to") {
            const bool begins = name == "--from";
            if (clips.empty()) fail(ExitCode::usage, "{} stands before the input that it is for", name);
            auto& time = begins ? clips.back().from : clips.back().to;
            if (time) fail(ExitCode::usage, "{} is given twice for '{}'", name, clips.back().path);
            time = parseGivenTime(name, begins ? from_[from++] : to_[to++]);
        }
    }
    return clips;
}

std::vector<ProjectEffect> parseEffects(const std::vector<std::string>& texts) {
    std::vector<ProjectEffect> effects;
    for (EffectChoice& choice : parseChain(texts)) effects.push_back({std::move(choice)});
    return effects;
}

}  // namespace qv::host
