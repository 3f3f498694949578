#include "Host/Listing/ClassUsage.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "Host/Listing/PropertyJSON.h"
#include "Host/Sheets/ClassPicture.h"
#include "QVFilterCore/QVAIEffectMTIFilter.h"
#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"
#include "QVFilterCore/QVTransitionMTIFilter.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qv::host {

namespace {

bool isPassage(const QVFilterClass& filterClass) {
    return filterClass.inputsOrInherited() == QVFilterInputs::two;
}

/// What to set besides the inputs: the strength to begin with, and a passage's picture of its own clip.
std::vector<std::string> settings(const QVFilterClass& filterClass, const std::string& setting) {
    std::vector<std::string> all;
    if (filterClass.property("effectValue"))
        all.push_back(fmt::format("effectValue={}", shortestNumber(filterClass.defaultStrength())));
    if (!isPassage(filterClass) && filterClass.property("progress"))
        all.push_back(fmt::format("progress={}", kPassageProgress));
    if (!setting.empty()) all.push_back(setting);
    return all;
}

/// What a host does with the filters of one base, line by line.
struct BaseUsage {
    const QVFilterClass* base;
    std::string_view type, variable;
    std::vector<std::string_view> lines;
};

const BaseUsage& usageOf(const QVFilterClass& filterClass) {
    static const std::array<BaseUsage, 5> kUsages{{
        {&QVTransitionMTIFilterClass,
         "QVTransitionMTIFilter",
         "transition",
         {"setInputImage1(outgoing)", "setInputImage2(incoming)", "setProgress(progress)"}},
        {&QVAIEffectMTIFilterClass,
         "QVAIEffectMTIFilter",
         "effect",
         {"setInputImage(frame)", "setMaskImage(mask)", "setMaskPixelBuffer(maskPixels)",
          "setInputImageOriginalSize(frame.size())", "setITime(seconds)"}},
        {&QVProgressBasedEffectMTIFilterClass,
         "QVProgressBasedEffectMTIFilter",
         "effect",
         {"setInputImage(frame)", "setStartTime(0)", "setEndTime(clipSeconds)", "setITime(seconds)"}},
        {&QVEffectMTIFilterClass,
         "QVEffectMTIFilter",
         "effect",
         {"setInputImage(frame)", "setITime(seconds)"}},
        {&QVMTIOneInputFilterClass, "QVMTIOneInputFilter", "stage", {"setInputImage(frame)"}},
    }};
    const auto* found = std::find_if(kUsages.begin(), kUsages.end(), [&](const BaseUsage& usage) {
        return filterClass.isSubclassOf(*usage.base);
    });
    return found == kUsages.end() ? kUsages.back() : *found;
}

}  // namespace

std::string usageCommand(const QVFilterClass& filterClass, const std::string& setting) {
    std::string choice(filterClass.name);
    for (const std::string& each : settings(filterClass, setting)) choice += ":" + each;
    if (choice.find(' ') != std::string::npos) choice = "'" + choice + "'";  // a variant's name
    if (isPassage(filterClass))
        return fmt::format("qvfilter transition {} -i first.mp4 -i second.mp4 -o out.mp4", choice);
    const bool masked = filterClass.inputsOrInherited() == QVFilterInputs::oneAndMask;
    return fmt::format("qvfilter render -i clip.mp4{} -e {} -o out.mp4", masked ? " --mask mask.mp4" : "",
                       choice);
}

std::string usageSnippet(const QVFilterClass& filterClass, const std::string& setting) {
    const BaseUsage& usage = usageOf(filterClass);
    std::string text = fmt::format(
        "#include \"QVFilterCore/{0}.h\"\n#include \"QVFilterExtension/QVFilterRegistry.h\"\n\n"
        "const auto filter = qv::createFilter(\"{1}\");\n"
        "auto& {2} = dynamic_cast<qv::{0}&>(*filter);\n",
        usage.type, filterClass.name, usage.variable);
    const std::vector<std::string> set = settings(filterClass, setting);
    if (!set.empty()) text += "std::string error;\n";
    for (const std::string& each : set) {
        const std::size_t equals = each.find('=');
        text += fmt::format("qv::setPropertyFromText({}, \"{}\", \"{}\", &error);\n", usage.variable,
                            each.substr(0, equals), each.substr(equals + 1));
    }
    text += "\n// Each frame:\n";
    for (std::string_view line : usage.lines) text += fmt::format("{}.{};\n", usage.variable, line);
    return text + fmt::format("const qv::MTIImage output = {}.outputImage();\n", usage.variable);
}

}  // namespace qv::host
