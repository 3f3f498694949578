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

/// The classes that a name may mean: the one of this very name, else those that are called so for short. A
/// short name has no "QV" in front, and at the end no "Filter", no "MTI" before it, and no "Effect" or
/// "Transition" before that, or only the first of these left out; neither letters' case nor spaces, hyphens
/// and underscores count. "wave" is QVWaveMTIFilter and QVWaveTransitionMTIFilter, "wave transition" the
/// latter.
std::vector<const QVFilterClass*> filterClassesCalled(std::string_view name);

/// The shortest form of a class's name, in small letters. Other classes may be called so, too.
std::string shortFilterClassName(const QVFilterClass& filterClass);

/// The classes in which every word of `words` occurs: in the name, the title, the meaning, the tags, the
/// category or the kind, in any case of letters.
std::vector<const QVFilterClass*> filterClassesMatching(std::string_view words);

/// Up to `count` class names that a mistyped name may have meant, closest first: by letters changed, case
/// ignored, with the usual affixes optional.
std::vector<std::string_view> closestClassNames(std::string_view name, std::size_t count);

}  // namespace qv
