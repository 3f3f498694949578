#include "Host/Farm/FarmPlan.h"

#include <algorithm>

#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/JSON.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Farm/FarmIdentity.h"
#include "QVFilterExtension/QVFilterVersion.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

constexpr int kPlanFormat = 1;

Json partToJSON(const FarmPart& part) {
    return {{"index", part.index},    {"kind", part.isSound ? "sound" : "pictures"},
            {"file", part.file},      {"start", part.start},
            {"frames", part.frames},  {"seconds", part.seconds},
            {"command", part.command}};
}

FarmPart partFromJSON(const Json& json) {
    return {.index = json.at("index"),
            .isSound = json.at("kind") == "sound",
            .file = json.at("file"),
            .start = json.at("start"),
            .frames = json.at("frames"),
            .seconds = json.at("seconds"),
            .command = json.at("command")};
}

FarmPlan planFromJSON(const Json& json) {
    FarmPlan plan;
    const Json& encoder = json.at("encoder");
    plan.tool = json.at("tool");
    plan.resources = json.at("resources");
    plan.projectFile = json.at("project").at("file");
    plan.project = json.at("project").at("hash");
    plan.words = json.at("options").get<std::vector<std::string>>();
    plan.container = encoder.at("container");
    plan.codec = encoder.at("codec");
    plan.pixelFormat = encoder.at("pixelFormat");
    plan.settings = encoder.at("hash");
    plan.rate = json.at("fps");
    plan.size = json.at("size");
    plan.frames = json.at("frames");
    plan.ownFrames = json.at("ownFrames");
    plan.slotsBegin = json.at("slotsBegin");
    plan.end = json.at("end");
    for (const Json& part : json.at("parts")) plan.parts.push_back(partFromJSON(part));
    return plan;
}

}  // namespace

std::string FarmPlan::hash() const {
    Hasher hasher;
    hasher.add(tool).add(resources).add(project).add(settings);
    for (const FarmPart& part : parts) hasher.add(part.file).add(part.start).add(part.frames);
    return hasher.text();
}

const FarmPart* FarmPlan::soundPart() const {
    return !parts.empty() && parts.back().isSound ? &parts.back() : nullptr;
}

std::filesystem::path planPath(const std::filesystem::path& folder, const std::string& given) {
    return given.empty() ? folder / "plan.json" : std::filesystem::path(given);
}

std::string nameOf(const FarmPart& part) {
    return part.isSound ? fmt::format("part {} ({}, the sound)", part.index, part.file)
                        : fmt::format("part {} ({})", part.index, part.file);
}

std::string planText(const FarmPlan& plan) {
    Json json{{"format", kPlanFormat},
              {"tool", plan.tool},
              {"resources", plan.resources},
              {"project", {{"file", plan.projectFile}, {"hash", plan.project}}},
              {"options", plan.words},
              {"encoder",
               {{"container", plan.container},
                {"codec", plan.codec},
                {"pixelFormat", plan.pixelFormat},
                {"hash", plan.settings}}},
              {"fps", plan.rate},
              {"size", plan.size},
              {"frames", plan.frames},
              {"ownFrames", plan.ownFrames},
              {"slotsBegin", plan.slotsBegin},
              {"end", plan.end},
              {"hash", plan.hash()},
              {"parts", Json::array()}};
    for (const FarmPart& part : plan.parts) json["parts"].push_back(partToJSON(part));
    return dump(json);
}

FarmPlan readPlan(const std::filesystem::path& file) {
    const std::string text = readFile(file);
    if (text.empty()) fail(ExitCode::input, "there is no plan '{}'; edit --split makes one", file.string());
    const Json json = Json::parse(text, nullptr, false);
    const bool isPlan = json.is_object() && json.contains("format") && json.contains("parts");
    if (!isPlan) fail(ExitCode::input, "'{}' is no plan", file.string());
    if (json["format"] != kPlanFormat)
        fail(ExitCode::input, "'{}' is a plan of another version of this tool", file.string());
    try {
        FarmPlan plan = planFromJSON(json);
        if (json.at("hash") != plan.hash()) fail(ExitCode::input, "the plan '{}' was altered", file.string());
        return plan;
    } catch (const Json::exception&) {
        fail(ExitCode::input, "the plan '{}' is damaged", file.string());
    }
}

EditRequest requestOf(const FarmPlan& plan, const std::string& project,
                      const std::vector<std::string>& machineWords) {
    if (plan.tool != QV_FILTER_VERSION)
        fail(ExitCode::input, "the plan was made by version {} of this tool, this is {}", plan.tool,
             QV_FILTER_VERSION);
    if (plan.resources != resourcesHash())
        fail(ExitCode::input, "the plan was made with other effects of the same version");
    EditRequest request;
    CommandParser parser("qvfilter", "", "", "");
    request.add(parser.addCommand("edit", ""));
    std::vector<std::string> words{"edit"};
    words.insert(words.end(), plan.words.begin(), plan.words.end());
    words.insert(words.end(), machineWords.begin(), machineWords.end());
    words.insert(words.end(), {"--", project.empty() ? plan.projectFile : project});
    parser.run(words);
    return request;
}

}  // namespace qv::host
