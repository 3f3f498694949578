#include "Host/TransitionFilter.h"

#include <string>

#include "Host/Failure.h"
#include "Host/Timeline.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

constexpr std::size_t kSuggestions = 3;

bool isTransition(const QVFilterClass& filterClass) {
    return filterClass.isSubclassOf(QVTransitionMTIFilterClass);
}

/// "did you mean …", or where all of them stand.
std::string suggestion(std::string_view name) {
    std::vector<std::string_view> names;
    for (std::string_view close : closestClassNames(name, allFilterClasses().size())) {
        if (isTransition(*filterClassNamed(close)) && names.size() < kSuggestions) names.push_back(close);
    }
    if (names.empty()) return "qvfilter list names the transitions";
    return fmt::format("did you mean {}?", fmt::join(names, ", "));
}

}  // namespace

EffectChoice parseTransition(std::string_view text) {
    const std::string_view name = text.substr(0, text.find(':'));
    const QVFilterClass* filterClass = filterClassNamed(name);
    if (!filterClass) fail(ExitCode::usage, "there is no class '{}'; {}", name, suggestion(name));
    if (!isTransition(*filterClass)) {
        fail(ExitCode::usage, "{} is no transition; {}", name, suggestion(name));
    }
    return parseEffect(text);
}

TransitionFilter::TransitionFilter(EffectChoice choice, CMTimeRange range) : choice_(std::move(choice)) {
    filter_ = makeFilterOnClip(choice_, {});
    if (!choice_.sets("timeRange")) choice_.filterClass->property("timeRange")->set(*filter_, range);
}

MTIImage TransitionFilter::outputImage(const MTIImage& outgoing, const MTIImage& incoming, double progress) {
    if (!choice_.sets("progress")) choice_.filterClass->property("progress")->set(*filter_, progress);
    FilterInputs inputs;
    inputs.first = outgoing;
    inputs.second = incoming;
    inputs.originalSize = outgoing.size();
    setInputs(*filter_, inputs);
    return outputImageOf(*filter_);
}

}  // namespace qv::host
