#include "Host/Listing/ClassUsage.h"

#include <array>
#include <string_view>
#include <vector>

#include "Host/CommandLine/JSON.h"
#include "Host/Sheets/ClassPicture.h"

#include <fmt/format.h>

namespace qv::host {

namespace {

/// What to set besides the inputs: the strength to begin with, and what is asked for.
std::vector<std::string> settings(const QVFilterClass& filterClass, const std::string& setting) {
    std::vector<std::string> all;
    if (filterClass.property("effectValue") && !filterClass.ignores("effectValue"))
        all.push_back(fmt::format("effectValue={}", shortestNumber(filterClass.defaultStrength())));
    if (!filterClass.isTransition() && filterClass.property("progress"))
        all.push_back(fmt::format("progress={}", kTransitionProgress));
    if (!setting.empty()) all.push_back(setting);
    return all;
}

/// The variable that holds what an input is given.
std::string_view variableFor(const QVFilterClass& filterClass, const QVInput& input) {
    switch (input.role) {
        case QVInputRole::frame:
            return filterClass.input(QVInputRole::incoming) ? "outgoing" : "frame";
        case QVInputRole::incoming:
            return "incoming";
        case QVInputRole::mask:
            return input.isBuffer ? "maskPixels" : "mask";
        case QVInputRole::layer:
            return "layer";
        case QVInputRole::table:
            return "table";
        case QVInputRole::texture:
            return {};
    }
    return {};
}

/// What a host sets for each frame, and the variable that holds it.
struct FrameSetting {
    std::string_view property, value;
};
constexpr std::array<FrameSetting, 5> kFrameSettings{{{"startTime", "0.0"},
                                                      {"endTime", "clipSeconds"},
                                                      {"iTime", "seconds"},
                                                      {"time", "seconds"},
                                                      {"progress", "progress"}}};

}  // namespace

std::string usageCommand(const QVFilterClass& filterClass, const std::string& setting) {
    std::string choice(filterClass.name);
    for (const std::string& each : settings(filterClass, setting)) choice += ":" + each;
    if (choice.find(' ') != std::string::npos) choice = "'" + choice + "'";  // a variant's name
    if (filterClass.isTransition())
        return fmt::format("qvfilter transition {} -i first.mp4 -i second.mp4 -o out.mp4", choice);
    if (filterClass.input(QVInputRole::incoming))  // a part of transitions has no clip of its own
        return fmt::format("qvfilter sheet --all --only {} -o sheet.png", filterClass.name);
    const bool masked = filterClass.input(QVInputRole::mask);
    return fmt::format("qvfilter render -i clip.mp4{} -e {} -o out.mp4", masked ? " --mask mask.mp4" : "",
                       choice);
}

std::string usageSnippet(const QVFilterClass& filterClass, const std::string& setting) {
    std::string text = fmt::format(
        "#include \"QVFilterCore/QVMTIFilter.h\"\n#include \"QVFilterExtension/QVFilterRegistry.h\"\n\n"
        "const auto filter = qv::createFilter(\"{}\");\n",
        filterClass.name);
    for (const std::string& each : settings(filterClass, setting)) {
        const std::size_t equals = each.find('=');
        text += fmt::format("qv::setPropertyFromText(*filter, \"{}\", \"{}\");\n", each.substr(0, equals),
                            each.substr(equals + 1));
    }
    text += "\n// Each frame:\n";
    for (const QVInput& input : filterClass.allInputs()) {
        const std::string_view variable = variableFor(filterClass, input);
        if (!variable.empty())
            text += fmt::format("qv::setInput(*filter, \"{}\", {});\n", input.name, variable);
    }
    for (const FrameSetting& each : kFrameSettings) {
        if (filterClass.property(each.property))
            text += fmt::format("qv::setProperty(*filter, \"{}\", {});\n", each.property, each.value);
    }
    return text + "const qv::MTIImage output = filter->outputImage();\n";
}

}  // namespace qv::host
