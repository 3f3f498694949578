#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Platform/Geometry/MTIVector.h"

namespace qv {

/// One uniform's value. A number keeps the type it was put in with; binding converts it to what the shader declares.
using MTIValue = std::variant<float, double, std::int32_t, bool, MTIVector>;

/// The uniforms of one pass: an insertion-ordered dictionary of name to value. Small, so a search is a scan.
class MTIParameters {
  public:
    /// A uniform's name and value.
    using Entry = std::pair<std::string, MTIValue>;

    MTIParameters() = default;
    /// In this order; of a name that stands twice the later value.
    MTIParameters(std::initializer_list<Entry> entries) {
        for (const Entry& entry : entries) set(entry.first, entry.second);
    }

    /// Replaces the value of a name that is there, else appends.
    void set(std::string_view name, MTIValue value);
    /// Nil when there is no such name.
    const MTIValue* find(std::string_view name) const;

    /// Entries, in the order in which their names were first set.
    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }
    bool operator==(const MTIParameters&) const = default;

  private:
    std::vector<Entry> entries_;
};

}  // namespace qv
