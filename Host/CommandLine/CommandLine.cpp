#include "Host/CommandLine/CommandLine.h"

#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <system_error>

#include "Host/CommandLine/CommandParser.h"
#include "Platform/Media/Bitmap.h"

namespace qv::host {

namespace {

template <typename Number>
std::optional<Number> parseWhole(std::string_view text) {
    Number value{};
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return result;
}

}  // namespace

PixelSize parseSize(const std::string& text, const std::string& option) {
    const std::size_t cross = text.find('x');
    if (cross != std::string::npos) {
        const auto width = parseWhole<int>(std::string_view(text).substr(0, cross));
        const auto height = parseWhole<int>(std::string_view(text).substr(cross + 1));
        const auto fits = [](const std::optional<int>& side) {
            return side && *side >= 1 && *side <= kMaximumImageSide;
        };
        if (fits(width) && fits(height)) return {*width, *height};
    }
    fail(ExitCode::usage, "{} takes WIDTHxHEIGHT with sides of 1 to {}, not '{}'", option, kMaximumImageSide,
         text);
}

bool matchesPattern(std::string_view name, const std::string& pattern) {
    if (pattern.find_first_of("*?[") == std::string::npos) {
        return lowered(name).find(lowered(pattern)) != std::string::npos;
    }
    return ::fnmatch(lowered(pattern).c_str(), lowered(name).c_str(), 0) == 0;
}

void OverwriteOptions::add(const Command& command) {
    const CommandOption always = command.flag("-y,--yes", yes, "Replace an output that exists");
    command.flag("-n,--no", no, "Leave an output that exists, and fail").excludes(always);
}

void checkOutput(const std::string& path, const OverwriteOptions& overwrite) {
    if (path == "-") {
        if (::isatty(STDOUT_FILENO))
            fail(ExitCode::output, "standard output is a terminal; redirect it or name a file");
        return;
    }
    struct stat status {};
    // A link that leads nowhere is something, too.
    if (::stat(path.c_str(), &status) != 0 && ::lstat(path.c_str(), &status) != 0) return;
    if (S_ISDIR(status.st_mode)) fail(ExitCode::output, "cannot write '{}': Is a directory", path);
    const bool isLost = S_ISREG(status.st_mode) || S_ISLNK(status.st_mode);
    if (!isLost || overwrite.yes) return;
    if (!overwrite.no && ::isatty(STDIN_FILENO) && ::isatty(STDERR_FILENO)) {
        writeStandardError(fmt::format("'{}' exists. Replace it? [y/N] ", path));
        std::string answer;
        std::getline(std::cin, answer);
        if (!answer.empty() && (answer[0] == 'y' || answer[0] == 'Y')) return;
        fail(ExitCode::output, "'{}' was left as it is", path);
    }
    fail(ExitCode::output, "'{}' exists{}", path, overwrite.no ? "" : "; -y replaces it");
}

std::string shellWord(const std::string& word) {
    const bool isPlain = !word.empty() && word.find_first_not_of(
                                              "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                              "0123456789_-+=./:,@%") == std::string::npos;
    if (isPlain) return word;
    std::string result = "'";
    for (const char c : word) c == '\'' ? result += "'\\''" : result += c;
    return result + "'";
}

CommandOption addJSONFlag(const Command& command, bool& json) {
    return command.flag("--json", json, "Print JSON for programs");
}

}  // namespace qv::host
