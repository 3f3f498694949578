#include "Platform/Media/PictureSequence.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>

#include <fmt/format.h>

namespace qv {
namespace {

constexpr int kMostDigits = 9;

/// A name between its numbers, with the least digits of each.
struct Parts {
    std::vector<std::string> texts{1};
    std::vector<int> digits;
};

Parts split(std::string_view name) {
    Parts parts;
    for (std::size_t i = 0; i < name.size(); ++i) {
        std::size_t end = i + 1;
        while (name[i] == '%' && end < name.size() && name[end] >= '0' && name[end] <= '9') ++end;
        const bool isNumber = name[i] == '%' && end < name.size() && name[end] == 'd';
        if (isNumber) {
            int digits = 1;
            std::from_chars(name.data() + i + 1, name.data() + end, digits);
            parts.digits.push_back(digits);
            parts.texts.emplace_back();
            i = end;
        } else {
            if (name[i] == '%' && end < name.size() && name[end] == '%') ++i;
            parts.texts.back() += name[i];
        }
    }
    return parts;
}

std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace

std::optional<PictureSequence> PictureSequence::parse(const std::string& path) {
    const std::string_view name = nameOf(path);
    Parts parts = split(name);
    if (parts.digits.size() != 1 || parts.digits[0] > kMostDigits) return std::nullopt;
    PictureSequence result;
    result.folder_ = path.substr(0, path.size() - name.size());
    result.before_ = std::move(parts.texts[0]);
    result.after_ = std::move(parts.texts[1]);
    result.digits_ = std::max(parts.digits[0], 1);
    return result;
}

std::optional<PictureSequence> PictureSequence::unlessFile(const std::string& path) {
    return ::access(path.c_str(), F_OK) == 0 ? std::nullopt : parse(path);
}

bool PictureSequence::hasSeveralNumbers(const std::string& path) {
    return split(nameOf(path)).digits.size() > 1;
}

std::string PictureSequence::path(int number) const {
    return fmt::format("{}{}{:0{}}{}", folder_, before_, number, digits_, after_);
}

std::string PictureSequence::pattern() const {
    const auto escaped = [](const std::string& text) {
        std::string result;
        for (const char c : text) result.append(c == '%' ? 2 : 1, c);
        return result;
    };
    return fmt::format("{}{}%0{}d{}", escaped(folder_), escaped(before_), digits_, escaped(after_));
}

std::vector<int> PictureSequence::numbers() const {
    namespace fs = std::filesystem;
    std::vector<int> found;
    std::error_code error;
    for (fs::directory_iterator it(folder_.empty() ? "." : folder_, error), end; !error && it != end;
         it.increment(error)) {
        const std::string name = it->path().filename();
        const std::size_t around = before_.size() + after_.size();
        if (name.size() <= around || name.size() > around + kMostDigits) continue;
        int number = -1;
        const char* digits = name.data() + before_.size();
        std::from_chars(digits, name.data() + name.size() - after_.size(), number);
        if (number >= 0 && nameOf(path(number)) == name) found.push_back(number);
    }
    std::sort(found.begin(), found.end());
    return found;
}

}  // namespace qv
