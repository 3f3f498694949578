#include "Host/CommandLine/EffectChoice.h"

#include <algorithm>

#include "Host/CommandLine/Failure.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

constexpr std::size_t kSuggestions = 3;

/// Parts between colons, with escapes undone.
std::vector<std::string> splitAtColons(std::string_view text) {
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escapes =
            text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == ':' || text[i + 1] == '\\');
        if (escapes) {
            parts.back() += text[++i];
        } else if (text[i] == ':') {
            parts.emplace_back();
        } else {
            parts.back() += text[i];
        }
    }
    return parts;
}

std::string propertyNames(const QVFilterClass& filterClass) {
    std::vector<std::string_view> names;
    for (const QVProperty* property : filterClass.allProperties()) names.push_back(property->name);
    return names.empty() ? "nothing to set" : fmt::format("{}", fmt::join(names, ", "));
}

/// "did you mean …", or where all of them stand.
std::string suggestion(std::string_view name, ClassUse use) {
    std::vector<std::string_view> names;
    for (std::string_view close : closestClassNames(name, allFilterClasses().size())) {
        if (names.size() < kSuggestions && fits(*filterClassNamed(close), use)) names.push_back(close);
    }
    if (!names.empty()) return fmt::format("did you mean {}?", fmt::join(names, ", "));
    return use == ClassUse::transition ? "qvfilter list --kind transition names them"
                                       : "qvfilter list names them";
}

std::string_view whatItIs(const QVFilterClass& filterClass) {
    if (filterClass.kindOrInherited() == QVFilterKind::effect) return "an effect over one clip";
    return filterClass.input(QVInputRole::incoming) ? "a part of transitions" : "a filter over one clip";
}

}  // namespace

bool fits(const QVFilterClass& filterClass, ClassUse use) {
    if (use == ClassUse::overClip) return !filterClass.input(QVInputRole::incoming);
    return use == ClassUse::any || filterClass.isTransition();
}

bool EffectChoice::sets(std::string_view propertyName) const {
    return std::any_of(settings.begin(), settings.end(),
                       [&](const auto& setting) { return setting.first->name == propertyName; });
}

void EffectChoice::addSetting(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        fail(ExitCode::usage, "a setting of {} is name=value, not '{}'", filterClass->name, text);
    }
    const std::string_view name = text.substr(0, equals);
    const QVProperty* property = filterClass->property(name);
    if (!property) {
        fail(ExitCode::usage, "{} has no property '{}'; it has {}", filterClass->name, name,
             propertyNames(*filterClass));
    }
    std::string cause;
    const auto value = parseProperty(*property, text.substr(equals + 1), &cause);
    if (!value) fail(ExitCode::usage, "{}: {}", filterClass->name, cause);
    settings.emplace_back(property, *value);
}

const QVFilterClass& findClass(std::string_view name, ClassUse use) {
    const auto called = filterClassesCalled(name);
    std::vector<std::string_view> fitting;
    for (const QVFilterClass* filterClass : called) {
        if (fits(*filterClass, use)) fitting.push_back(filterClass->name);
    }
    if (fitting.size() == 1) return *filterClassNamed(fitting.front());
    if (fitting.size() > 1)
        fail(ExitCode::usage, "'{}' may be {}; give one of these names", name, fmt::join(fitting, " or "));
    if (called.empty()) fail(ExitCode::usage, "there is no class '{}'; {}", name, suggestion(name, use));
    const QVFilterClass& other = *called.front();
    if (use == ClassUse::transition) {
        fail(ExitCode::usage, "{} is not a transition but {}; {}", other.name, whatItIs(other),
             suggestion(name, use));
    }
    fail(ExitCode::usage, "{} takes two clips; a chain has one", other.name);
}

EffectChoice parseEffect(std::string_view text, ClassUse use) {
    const std::vector<std::string> parts = splitAtColons(text);
    EffectChoice choice{&findClass(parts[0], use)};
    for (std::size_t i = 1; i < parts.size(); ++i) choice.addSetting(parts[i]);
    return choice;
}

std::vector<EffectChoice> parseChain(const std::vector<std::string>& texts) {
    std::vector<EffectChoice> chain;
    for (const std::string& text : texts) chain.push_back(parseEffect(text, ClassUse::overClip));
    return chain;
}

}  // namespace qv::host
