#include "Host/Edit/DocumentReader.h"

#include <algorithm>
#include <filesystem>

#include "Host/Clips/MaskSource.h"
#include "Platform/Foundation/Log.h"

#include <fmt/ranges.h>

namespace qv::host {

void DocumentReader::mistake(const DocumentValue& value, const std::string& text) {
    mistakes_.add(value.place, ExitCode::input, text);
}

bool DocumentReader::with(const DocumentValue& value, const std::function<void()>& work) {
    return mistakes_.guard(value.place, work);
}

bool DocumentReader::isObject(const DocumentValue& value, const Names& names) {
    if (!value.is(Kind::object)) {
        mistake(value, fmt::format("an object is expected, not {}", value.kindName()));
        return false;
    }
    for (const auto& [name, member] : value.members) {
        if (std::find(names.begin(), names.end(), name) != names.end()) continue;
        mistake(member,
                fmt::format("there is no '{}' here; there are {}", oneLine(name), fmt::join(names, ", ")));
    }
    return true;
}

bool DocumentReader::isList(const DocumentValue& value) {
    if (value.is(Kind::list)) return true;
    mistake(value, fmt::format("a list is expected, not {}", value.kindName()));
    return false;
}

bool DocumentReader::isTrue(const DocumentValue& value) {
    if (!value.is(Kind::boolean)) mistake(value, "true or false is expected");
    return value.text == "true";
}

std::string DocumentReader::plainText(const DocumentValue& value) const {
    if (value.is(Kind::list) || value.is(Kind::object) || value.is(Kind::null))
        fail(ExitCode::input, "a text or a number is expected, not {}", value.kindName());
    return value.is(Kind::text) ? replaced(value.text) : value.text;
}

std::string DocumentReader::listText(const DocumentValue& value) const {
    if (!value.is(Kind::list)) return plainText(value);
    std::vector<std::string> parts;
    for (const DocumentValue& item : value.items) parts.push_back(plainText(item));
    return fmt::format("{}", fmt::join(parts, ","));
}

std::optional<MediaTime> DocumentReader::readTime(const DocumentValue& owner, const char* name) {
    std::optional<MediaTime> time;
    if (const DocumentValue* value = owner.member(name))
        with(*value, [&] { time = parseGivenTime(name, plainText(*value)); });
    return time;
}

std::optional<Fit> DocumentReader::readFit(const DocumentValue& owner) {
    std::optional<Fit> fit;
    if (const DocumentValue* value = owner.member("fit")) {
        with(*value, [&] {
            const std::string name = plainText(*value);
            fit = fitNamed(name);
            if (!fit) fail(ExitCode::input, "a fit is cover, contain or stretch, not '{}'", name);
        });
    }
    return fit;
}

double DocumentReader::readGain(const DocumentValue& owner) {
    double gain = 1;
    if (const DocumentValue* value = owner.member("gain"))
        with(*value, [&] { gain = parseGain("gain", plainText(*value)); });
    return gain;
}

std::optional<PixelSize> DocumentReader::readSize(const DocumentValue& owner) {
    std::optional<PixelSize> size;
    if (const DocumentValue* value = owner.member("size"))
        with(*value, [&] { size = parseSize(plainText(*value), "size"); });
    return size;
}

Rational DocumentReader::readRate(const DocumentValue& owner) {
    Rational rate;
    if (const DocumentValue* value = owner.member("fps"))
        with(*value, [&] { rate = parseRate("fps", plainText(*value)); });
    return rate;
}

bool DocumentReader::readFlag(const DocumentValue& owner, const char* name, bool otherwise) {
    const DocumentValue* value = owner.member(name);
    return value ? isTrue(*value) : otherwise;
}

std::string DocumentReader::readMask(const DocumentValue& owner) {
    const DocumentValue* value = owner.member("mask");
    if (!value) return {};
    return value->text == kAutomaticMask ? value->text : readPath(*value);
}

std::string DocumentReader::readPath(const DocumentValue& value) {
    std::string path;
    with(value, [&] {
        path = plainText(value);
        if (path.empty()) fail(ExitCode::input, "the name of the file is empty");
        if (path.find("://") == std::string::npos)
            path = (std::filesystem::path(value.place.file).parent_path() / path).string();
    });
    return path;
}

void DocumentReader::readSetting(EffectChoice& choice, const std::string& name, const DocumentValue& value,
                                 ClassUse use) {
    const QVProperty& property = choice.property(name);
    const bool isKeyList = value.is(Kind::list) && !value.items.empty() && value.items[0].is(Kind::object);
    if (!isKeyList) return choice.addSetting(name + "=" + listText(value), use);
    PropertyKeys keys{&property, {}};
    for (const DocumentValue& item : value.items) {
        with(item, [&] {
            if (!isObject(item, {"at", "value", "easing"})) return;
            const DocumentValue *at = item.member("at"), *given = item.member("value");
            if (!at || !given) fail(ExitCode::input, "a key has 'at' and 'value'");
            PropertyKey key{parseMediaTime("at", plainText(*at)), parseKeyValue(property, listText(*given))};
            if (const DocumentValue* easing = item.member("easing"))
                key.easing = parseEasing(plainText(*easing));
            keys.keys.push_back(std::move(key));
        });
    }
    if (keys.keys.size() < value.items.size()) return;
    checkKeyTimes(keys, kRateOfPictures);
    choice.keys.push_back(std::move(keys));
}

}  // namespace qv::host
