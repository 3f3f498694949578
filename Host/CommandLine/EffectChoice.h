#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Host/CommandLine/MediaTime.h"
#include "Host/CommandLine/PropertyKeys.h"
#include "QVFilterCore/QVFilterClass.h"

namespace qv::host {

/// The part of a clip that an effect lies on, counted from the clip's first frame.
struct EffectSpan {
    MediaTime from;
    std::optional<MediaTime> to;  ///< the clip's end without

    bool operator==(const EffectSpan&) const = default;
};

/// Where a class is wanted: anywhere, over one clip, or between two.
enum class ClassUse { any, overClip, transition };

/// Of -e.
inline constexpr const char* kEffectHelp =
    "CLASS@FROM-TO:name=value:name=keys, the part and the settings as one likes; repeatable, a chain";

/// A filter class and the settings that a user gave it, checked against the class object.
struct EffectChoice {
    const QVFilterClass* filterClass = nullptr;
    /// In the order of the command line; every value fits its property.
    std::vector<std::pair<const QVProperty*, QVPropertyValue>> settings = {};
    std::vector<PropertyKeys> keys = {};  ///< of the properties that move
    std::optional<EffectSpan> span = {};  ///< all of the clip without

    /// Whether the user set the property, which the host then leaves alone.
    bool sets(std::string_view propertyName) const;
    /// Checks and appends "name=value", or "name=keys" where there is a time to move in. Fails as usage: an
    /// unknown name lists the class's properties.
    void addSetting(std::string_view text, ClassUse use = ClassUse::any);
    /// The class's property of that name. Fails as usage: lists them.
    const QVProperty& property(std::string_view name) const;
    /// As parseEffect() reads it.
    std::string text() const;
};

/// Whether a class is one for that use.
bool fits(const QVFilterClass& filterClass, ClassUse use);

/// The class of that name, or the only one of those that fit the use which is called so for short, see
/// `filterClassesCalled`. Fails as usage: names what it may mean, or the closest ones.
const QVFilterClass& findClass(std::string_view name, ClassUse use = ClassUse::any);

/// Reads CLASS@FROM-TO:name=value:name=value. Over a clip FROM or TO or all of the part may be left out; only
/// there it stands, and values may be keys, as between two. A value may hold commas and '#'; "\:" stands for
/// a colon and "\\" for a backslash. Fails as usage.
EffectChoice parseEffect(std::string_view text, ClassUse use = ClassUse::any);

/// Reads FROM-TO, each in seconds, minutes and seconds, or frames. Fails as usage.
EffectSpan parseSpan(const std::string& text);

/// What is wrong with where an effect lies on a clip of that many seconds and frames a second, as one line;
/// empty when nothing is.
std::string spanMistake(const EffectChoice& choice, double seconds, double rate);

/// The choices of a chain over one clip. Fails as usage, also for a class that takes two clips.
std::vector<EffectChoice> parseChain(const std::vector<std::string>& texts);

}  // namespace qv::host
