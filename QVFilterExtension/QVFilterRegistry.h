#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "QVFilterCore/QVFilterClass.h"

namespace qv {

/// Every class that a host can create by name: the library's effects and transitions and the auxiliary
/// filters, in the order of QVFilterClassList.inc. Thread-safe.
std::span<const QVFilterClass* const> allFilterClasses();

/// Nil when there is none of this name.
const QVFilterClass* filterClassNamed(std::string_view name);

/// A new filter of the named class; nil when there is none.
std::unique_ptr<QVMTIFilter> createFilter(std::string_view className);

/// Up to `count` class names that a mistyped name may have meant, closest first: by letters changed, case
/// ignored, with the usual affixes optional.
std::vector<std::string_view> closestClassNames(std::string_view name, std::size_t count);

}  // namespace qv
