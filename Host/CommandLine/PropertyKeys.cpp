#include "Host/CommandLine/PropertyKeys.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "Host/CommandLine/Failure.h"
#include "Platform/Foundation/Log.h"

namespace qv::host {

namespace {

double between(double from, double to, double share) {
    return from + (to - from) * share;
}

/// The value on the way from this one to the other; this one where there is no way.
struct Interpolation {
    const QVProperty& property;
    const QVPropertyValue& other;
    double share;

    double number(double from, double to) const {
        return std::clamp(between(from, to, share), property.minimum, property.maximum);
    }
    QVPropertyValue operator()(bool from) const { return from; }
    QVPropertyValue operator()(const CMTimeRange& from) const { return from; }
    QVPropertyValue operator()(std::int64_t from) const {
        if (!property.variants.empty()) return from;
        return std::int64_t(std::llround(number(double(from), double(std::get<std::int64_t>(other)))));
    }
    QVPropertyValue operator()(double from) const { return number(from, std::get<double>(other)); }
    QVPropertyValue operator()(const MTIVector& from) const {
        const auto& to = std::get<MTIVector>(other);
        return MTIVector{float(number(from[0], to[0])), float(number(from[1], to[1]))};
    }
    QVPropertyValue operator()(const std::vector<double>& from) const {
        const auto& to = std::get<std::vector<double>>(other);
        if (from.size() != to.size()) return from;
        std::vector<double> result;
        for (std::size_t i = 0; i < from.size(); ++i) result.push_back(number(from[i], to[i]));
        return result;
    }
    QVPropertyValue operator()(const std::vector<UIColor>& from) const {
        const auto& to = std::get<std::vector<UIColor>>(other);
        if (from.size() != to.size()) return from;
        std::vector<UIColor> result;
        const auto component = [this](double a, double b) {
            return std::clamp(between(a, b, share), 0.0, 1.0);
        };
        for (std::size_t i = 0; i < from.size(); ++i) {
            const UIColor &a = from[i], &b = to[i];
            result.emplace_back(component(a.red(), b.red()), component(a.green(), b.green()),
                                component(a.blue(), b.blue()), component(a.alpha(), b.alpha()));
        }
        return result;
    }
    QVPropertyValue operator()(const CGAffineTransform& from) const {
        const auto& to = std::get<CGAffineTransform>(other);
        const auto part = [this](double a, double b) { return between(a, b, share); };
        return CGAffineTransform{part(from.a, to.a), part(from.b, to.b),   part(from.c, to.c),
                                 part(from.d, to.d), part(from.tx, to.tx), part(from.ty, to.ty)};
    }
};

}  // namespace

QVPropertyValue PropertyKeys::at(double seconds, double rate) const {
    const auto after = std::find_if(keys.begin(), keys.end(),
                                    [&](const PropertyKey& key) { return key.time.seconds(rate) > seconds; });
    if (after == keys.begin()) return keys.front().value;
    if (after == keys.end()) return keys.back().value;
    const PropertyKey& before = *std::prev(after);
    const double from = before.time.seconds(rate), to = after->time.seconds(rate);
    const double share = after->easing((seconds - from) / (to - from));
    return std::visit(Interpolation{*property, after->value, share}, before.value);
}

std::string PropertyKeys::text() const {
    std::string result;
    for (const PropertyKey& key : keys) {
        result += fmt::format("{}{}@{}", result.empty() ? "" : ",", propertyText(key.value), key.time.text());
        // The first key has no way to it. A linear way is named where the last one's easing would hold.
        const bool isNamed = &key != &keys.front() && !(keys.back().easing == Easing());
        if (isNamed) result += "~" + key.easing.name();
    }
    return result;
}

QVPropertyValue parseKeyValue(const QVProperty& property, std::string_view text) {
    std::string cause;
    const auto value = parseProperty(property, text, &cause);
    if (!value) fail(ExitCode::usage, "{}", cause);
    return *value;
}

Easing parseEasing(std::string_view text) {
    if (const auto easing = Easing::named(text)) return *easing;
    fail(ExitCode::usage, "there is no easing '{}'; there are {}", oneLine(text), Easing::names());
}

void checkKeyTimes(const PropertyKeys& keys, double rate) {
    double last = -1;
    for (const PropertyKey& key : keys.keys) {
        const double time = key.time.seconds(rate);
        if (time < 0)
            fail(ExitCode::usage, "{} has a key before the effect begins, at {}", keys.property->name,
                 key.time.text());
        if (time == last)
            fail(ExitCode::usage, "{} has two keys at one time, {} s", keys.property->name, time);
        if (time < last) {
            fail(ExitCode::usage, "the keys of {} are not in the order of their times: {} s comes after {} s",
                 keys.property->name, time, last);
        }
        last = time;
    }
}

PropertyKeys parsePropertyKeys(const QVProperty& property, std::string_view text) {
    PropertyKeys result{&property, {}};
    std::vector<std::optional<Easing>> easings;
    const auto wrong = [&](std::string_view part) {
        fail(ExitCode::usage, "a key of {} is VALUE@TIME, not '{}'", property.name, oneLine(part));
    };
    while (!text.empty()) {
        const std::size_t at = text.find('@');
        if (at == std::string_view::npos || at == 0) wrong(text);
        const std::size_t comma = text.find(',', at);
        std::string_view time = text.substr(at + 1, comma == std::string_view::npos ? comma : comma - at - 1);
        std::optional<Easing> easing;
        if (const std::size_t tilde = time.find('~'); tilde != std::string_view::npos) {
            easing = parseEasing(time.substr(tilde + 1));
            time = time.substr(0, tilde);
        }
        easings.push_back(easing);
        result.keys.push_back({parseMediaTime(fmt::format("a key of {}", property.name), std::string(time)),
                               parseKeyValue(property, text.substr(0, at))});
        if (comma == std::string_view::npos) break;
        text.remove_prefix(comma + 1);
        if (text.empty()) wrong(text);
    }
    for (std::size_t i = 0; i < easings.size(); ++i)
        result.keys[i].easing = easings[i].value_or(easings.back().value_or(Easing()));
    checkKeyTimes(result, kRateOfPictures);
    return result;
}

}  // namespace qv::host
