#include "Platform/ImageGraph/MTIParameters.h"

#include <algorithm>

namespace qv {

void MTIParameters::set(std::string_view name, MTIValue value) {
    const auto found = std::ranges::find(entries_, name, &Entry::first);
    if (found != entries_.end()) {
        found->second = value;
    } else {
        entries_.emplace_back(name, value);
    }
}

const MTIValue* MTIParameters::find(std::string_view name) const {
    const auto found = std::ranges::find(entries_, name, &Entry::first);
    return found == entries_.end() ? nullptr : &found->second;
}

}  // namespace qv
