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
                       [&](const auto& setting) { return setting.first->name == propertyName; }) ||
           std::any_of(keys.begin(), keys.end(),
                       [&](const PropertyKeys& moving) { return moving.property->name == propertyName; });
}

const QVProperty& EffectChoice::property(std::string_view name) const {
    if (const QVProperty* property = filterClass->property(name)) return *property;
    fail(ExitCode::usage, "{} has no property '{}'; it has {}", filterClass->name, name,
         propertyNames(*filterClass));
}

void EffectChoice::addSetting(std::string_view text, ClassUse use) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        fail(ExitCode::usage, "a setting of {} is name=value, not '{}'", filterClass->name, text);
    }
    const QVProperty& changed = property(text.substr(0, equals));
    const std::string_view value = text.substr(equals + 1);
    try {
        if (isKeys(value) && use != ClassUse::any) {
            keys.push_back(parsePropertyKeys(changed, value));
        } else {
            settings.emplace_back(&changed, parseKeyValue(changed, value));
        }
    } catch (const Failure& failure) {
        fail(failure.code(), "{}: {}", filterClass->name, failure.what());
    }
}

std::string EffectChoice::text() const {
    std::string result(filterClass->name);
    if (span) result += fmt::format("@{}-{}", span->from.text(), span->to ? span->to->text() : "");
    for (const auto& [property, value] : settings)
        result += fmt::format(":{}={}", property->name, propertyText(value));
    for (const PropertyKeys& moving : keys)
        result += fmt::format(":{}={}", moving.property->name, moving.text());
    return result;
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

EffectSpan parseSpan(const std::string& text) {
    const std::size_t dash = text.find('-');
    const std::string from = text.substr(0, dash),
                      to = dash == std::string::npos ? "" : text.substr(dash + 1);
    if (dash == std::string::npos || text == "-")
        fail(ExitCode::usage, "a part of a clip is FROM-TO, not '{}'", text);
    EffectSpan span;
    if (!from.empty()) span.from = parseMediaTime("a part of a clip", from);
    if (!to.empty()) span.to = parseMediaTime("a part of a clip", to);
    const bool comparable = span.to && (span.to->isFrames == span.from.isFrames || span.from.value == 0);
    if (comparable && span.to->value <= span.from.value)
        fail(ExitCode::usage, "a part of a clip ends after it begins, not '{}'", text);
    return span;
}

std::string spanMistake(const EffectChoice& choice, double seconds, double rate) {
    if (!choice.span || seconds <= 0) return {};
    constexpr double kTolerance = 1e-3;
    const double from = choice.span->from.seconds(rate);
    const double to = choice.span->to ? choice.span->to->seconds(rate) : seconds;
    if (from >= seconds - kTolerance) {
        return fmt::format("{} begins at {:.3f} s, where its clip has ended, at {:.3f} s",
                           choice.filterClass->name, from, seconds);
    }
    if (to > seconds + kTolerance) {
        return fmt::format("{} ends at {:.3f} s, past its clip's end at {:.3f} s", choice.filterClass->name,
                           to, seconds);
    }
    return to <= from ? fmt::format("{} ends before it begins", choice.filterClass->name) : std::string();
}

EffectChoice parseEffect(std::string_view text, ClassUse use) {
    const std::vector<std::string> parts = splitAtColons(text);
    const std::size_t at = parts[0].find('@');
    EffectChoice choice{&findClass(std::string_view(parts[0]).substr(0, at), use)};
    if (at != std::string::npos) {
        if (use != ClassUse::overClip)
            fail(ExitCode::usage, "{} takes no part of a clip here", choice.filterClass->name);
        choice.span = parseSpan(parts[0].substr(at + 1));
    }
    for (std::size_t i = 1; i < parts.size(); ++i) choice.addSetting(parts[i], use);
    return choice;
}

std::vector<EffectChoice> parseChain(const std::vector<std::string>& texts) {
    std::vector<EffectChoice> chain;
    for (const std::string& text : texts) chain.push_back(parseEffect(text, ClassUse::overClip));
    return chain;
}

}  // namespace qv::host
