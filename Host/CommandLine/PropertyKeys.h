#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Host/CommandLine/Easing.h"
#include "Host/CommandLine/MediaTime.h"
#include "QVFilterCore/QVProperty.h"

namespace qv::host {

/// A value at a time, counted from where the effect begins.
struct PropertyKey {
    MediaTime time;
    QVPropertyValue value;
    Easing easing = {};  ///< of the way to it
};

/// A property that moves: its values between keys, the first one's before and the last one's after them.
/// Numbers and colours are interpolated; what cannot be (switches, variants, lists of other lengths) stays as
/// it was until the next key.
struct PropertyKeys {
    const QVProperty* property = nullptr;
    std::vector<PropertyKey> keys;

    /// What is given in `rate` frames a second is converted. Within the property's range, also where an
    /// easing leaves it.
    QVPropertyValue at(double seconds, double rate) const;
    /// As parsePropertyKeys() reads it.
    std::string text() const;
};

/// Whether a setting's value is keys and not a value.
inline bool isKeys(std::string_view text) {
    return text.find('@') != std::string_view::npos;
}

/// Reads VALUE@TIME,VALUE@TIME~EASING, where a value may have commas of its own. An easing is that of the way
/// to its key; the last key's is also that of the ways without one. Fails as usage.
PropertyKeys parsePropertyKeys(const QVProperty& property, std::string_view text);

/// A setting's value as a key. Fails as usage.
QVPropertyValue parseKeyValue(const QVProperty& property, std::string_view text);
/// Fails as usage: lists the easings.
Easing parseEasing(std::string_view text);
/// Fails as usage unless every key is later than the one before and none before 0. Frames and seconds are
/// compared as if there were `rate` frames a second.
void checkKeyTimes(const PropertyKeys& keys, double rate);

}  // namespace qv::host
