#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QVFilterCore/QVFilterClass.h"

namespace qv::host {

/// A filter class and the settings that a user gave it, checked against the class object.
struct EffectChoice {
    const QVFilterClass* filterClass = nullptr;
    /// In the order of the command line; every value fits its property.
    std::vector<std::pair<const QVProperty*, QVPropertyValue>> settings = {};

    /// Whether the user set the property, which the host then leaves alone.
    bool sets(std::string_view propertyName) const;
    /// Checks and appends "name=value". Fails as usage: an unknown name lists the class's properties.
    void addSetting(std::string_view text);
};

/// The class of that name. Fails as usage, naming the closest ones.
const QVFilterClass& findClass(std::string_view name);

/// Reads CLASS:name=value:name=value. A value may hold commas and '#'; "\:" stands for a colon and "\\" for a
/// backslash. Fails as usage.
EffectChoice parseEffect(std::string_view text);

/// The choices of a chain over one clip. Fails as usage for a class that takes two clips.
std::vector<EffectChoice> parseChain(const std::vector<std::string>& texts);

}  // namespace qv::host
