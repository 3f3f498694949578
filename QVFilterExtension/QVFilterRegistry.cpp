#include "QVFilterExtension/QVFilterRegistry.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <sstream>
#include <string>
#include <unordered_map>

#include "QVFilterCore/QVMTIFilter.h"

#include <fmt/format.h>

namespace qv {

#define QV_FILTER_CLASS(name) extern const QVFilterClass name##Class;
#include "QVFilterExtension/QVFilterClassList.inc"
#undef QV_FILTER_CLASS

namespace {

const std::array kClasses = std::to_array<const QVFilterClass*>({
#define QV_FILTER_CLASS(name) &name##Class,
#include "QVFilterExtension/QVFilterClassList.inc"
#undef QV_FILTER_CLASS
});

std::string lowercase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return result;
}

/// A name without case and without the affixes that most classes share, each form shorter than the one
/// before. A number at the end stays.
std::vector<std::string> shortForms(std::string_view name) {
    std::string text = lowercase(name);
    std::erase_if(text, [](char c) { return c == ' ' || c == '-' || c == '_'; });
    if (text.starts_with("qv")) text.erase(0, 2);
    const std::size_t digits = text.size() - (text.find_last_not_of("0123456789") + 1);
    const std::string number = text.substr(text.size() - digits);
    text.erase(text.size() - digits);
    std::vector<std::string> forms{text + number};
    // One class lacks the last letter.
    for (std::string_view suffix : {"filter", "filte", "mti", "effect", "transition"}) {
        if (!text.ends_with(suffix) || text.size() == suffix.size()) continue;
        text.erase(text.size() - suffix.size());
        forms.push_back(text + number);
    }
    return forms;
}

/// What is left of a name when all of that is ignored.
std::string stem(std::string_view name) {
    return shortForms(name).back();
}

/// Levenshtein distance.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
            diagonal = above;
        }
    }
    return row[b.size()];
}

}  // namespace

std::span<const QVFilterClass* const> allFilterClasses() {
    return kClasses;
}

const QVFilterClass* filterClassNamed(std::string_view name) {
    static const auto byName = [] {
        std::unordered_map<std::string_view, const QVFilterClass*> map;
        for (const QVFilterClass* filterClass : kClasses) map.emplace(filterClass->name, filterClass);
        return map;
    }();
    const auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

std::vector<const QVFilterClass*> filterClassesCalled(std::string_view name) {
    if (const QVFilterClass* filterClass = filterClassNamed(name)) return {filterClass};
    const std::string wanted = shortForms(name).front();
    std::vector<const QVFilterClass*> called;
    std::ranges::copy_if(kClasses, std::back_inserter(called), [&](const QVFilterClass* filterClass) {
        const std::vector<std::string> forms = shortForms(filterClass->name);
        return std::ranges::find(forms, wanted) != forms.end();
    });
    return called;
}

std::string shortFilterClassName(const QVFilterClass& filterClass) {
    return stem(filterClass.name);
}

std::vector<const QVFilterClass*> filterClassesMatching(std::string_view words) {
    std::istringstream stream{lowercase(words)};
    const std::vector<std::string> wanted{std::istream_iterator<std::string>(stream), {}};
    std::vector<const QVFilterClass*> matching;
    for (const QVFilterClass* filterClass : kClasses) {
        std::string text = fmt::format("{} {} {} {} {}", filterClass->name, filterClass->title,
                                       filterClass->help, categoryName(filterClass->categoryOrInherited()),
                                       kindName(filterClass->kindOrInherited()));
        for (std::string_view tag : filterClass->tags) text += fmt::format(" {}", tag);
        text = lowercase(text);
        const auto occurs = [&text](const std::string& word) { return text.find(word) != std::string::npos; };
        if (std::ranges::all_of(wanted, occurs)) matching.push_back(filterClass);
    }
    return matching;
}

std::unique_ptr<QVMTIFilter> createFilter(std::string_view className) {
    const QVFilterClass* filterClass = filterClassNamed(className);
    return filterClass ? filterClass->create() : nullptr;
}

std::vector<std::string_view> closestClassNames(std::string_view name, std::size_t count) {
    const std::string wanted = stem(name);
    std::vector<std::pair<std::size_t, std::string_view>> ranked;
    for (const QVFilterClass* filterClass : kClasses) {
        const std::string candidate = stem(filterClass->name);
        const bool contains = wanted.size() >= 3 && candidate.find(wanted) != std::string::npos;
        const std::size_t distance = contains ? 0 : editDistance(wanted, candidate);
        if (distance <= std::max<std::size_t>(2, wanted.size() / 2))
            ranked.emplace_back(distance, filterClass->name);
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](auto& a, auto& b) { return a.first < b.first; });
    std::vector<std::string_view> names;
    for (const auto& [distance, candidate] : ranked) {
        if (names.size() == count) break;
        names.push_back(candidate);
    }
    return names;
}

}  // namespace qv
