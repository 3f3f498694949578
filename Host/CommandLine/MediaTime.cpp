#include "Host/CommandLine/MediaTime.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "Host/CommandLine/Failure.h"

namespace qv::host {

namespace {

constexpr double kFarthest = 1e9;

std::optional<double> parseNumber(std::string_view text) {
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = failure == std::errc() && end == text.data() + text.size();
    return whole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<double> parseClock(std::string_view text) {
    double seconds = 0;
    for (int part = 0; part < 3; ++part) {
        const std::size_t colon = text.find(':');
        const auto value = parseNumber(text.substr(0, colon));
        if (!value || (part > 0 && (*value < 0 || *value >= 60))) return std::nullopt;
        seconds = seconds * 60 + *value;
        if (colon == std::string_view::npos)
            return std::abs(seconds) <= kFarthest ? std::optional(seconds) : std::nullopt;
        text.remove_prefix(colon + 1);
    }
    return std::nullopt;
}

}  // namespace

double MediaTime::seconds(double rate) const {
    return isFrames ? value / (rate > 0 ? rate : kRateOfPictures) : value;
}

std::string MediaTime::text() const {
    return fmt::format("{}{}", value, isFrames ? "f" : "");
}

double parseTime(const std::string& option, const std::string& text) {
    if (const auto seconds = parseClock(text)) return *seconds;
    fail(ExitCode::usage, "{} takes seconds or [hours:]minutes:seconds, not '{}'", option, text);
}

MediaTime parseMediaTime(const std::string& option, const std::string& text) {
    if (const auto seconds = parseClock(text)) return {*seconds, false};
    if (text.ends_with('f')) {
        const auto frames = parseNumber(std::string_view(text).substr(0, text.size() - 1));
        if (frames && *frames == std::round(*frames) && std::abs(*frames) <= kFarthest)
            return {*frames, true};
    }
    fail(ExitCode::usage, "{} takes seconds, [hours:]minutes:seconds or frames as 120f, not '{}'", option,
         text);
}

std::optional<MediaTime> parseGivenTime(const std::string& option, const std::string& text) {
    if (text.empty()) return std::nullopt;
    const MediaTime time = parseMediaTime(option, text);
    if (time.value < 0) fail(ExitCode::usage, "{} is not negative, but '{}'", option, text);
    return time;
}

}  // namespace qv::host
