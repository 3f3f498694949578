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

}  // namespace

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

const QVFilterClass& findClass(std::string_view name) {
    if (const QVFilterClass* filterClass = filterClassNamed(name)) return *filterClass;
    const auto closest = closestClassNames(name, kSuggestions);
    if (closest.empty()) fail(ExitCode::usage, "there is no class '{}'; qvfilter list names them", name);
    fail(ExitCode::usage, "there is no class '{}'; did you mean {}?", name, fmt::join(closest, ", "));
}

EffectChoice parseEffect(std::string_view text) {
    const std::vector<std::string> parts = splitAtColons(text);
    EffectChoice choice{&findClass(parts[0])};
    for (std::size_t i = 1; i < parts.size(); ++i) choice.addSetting(parts[i]);
    return choice;
}

std::vector<EffectChoice> parseChain(const std::vector<std::string>& texts) {
    std::vector<EffectChoice> chain;
    for (const std::string& text : texts) {
        chain.push_back(parseEffect(text));
        const QVFilterClass& filterClass = *chain.back().filterClass;
        if (filterClass.inputsOrInherited() == QVFilterInputs::two) {
            fail(ExitCode::usage, "{} takes two clips; a chain has one", filterClass.name);
        }
    }
    return chain;
}

}  // namespace qv::host
