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

/// Where a class is wanted: anywhere, over one clip, or between two.
enum class ClassUse { any, overClip, transition };

/// Whether a class is one for that use.
bool fits(const QVFilterClass& filterClass, ClassUse use);

/// The class of that name, or the only one of those that fit the use which is called so for short, see
/// `filterClassesCalled`. Fails as usage: names what it may mean, or the closest ones.
const QVFilterClass& findClass(std::string_view name, ClassUse use = ClassUse::any);

/// Reads CLASS:name=value:name=value. A value may hold commas and '#'; "\:" stands for a colon and "\\" for a
/// backslash. Fails as usage.
EffectChoice parseEffect(std::string_view text, ClassUse use = ClassUse::any);

/// The choices of a chain over one clip. Fails as usage, also for a class that takes two clips.
std::vector<EffectChoice> parseChain(const std::vector<std::string>& texts);

}  // namespace qv::host
