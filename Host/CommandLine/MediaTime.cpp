#include "Host/CommandLine/MediaTime.h"

#include <charconv>
#include <cmath>
#include <numeric>
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

Rational parseRate(const std::string& option, const std::string& text) {
    constexpr double kHighest = 1000;
    const std::string_view all = text;
    const std::size_t slash = all.find('/');
    const auto value = parseNumber(all.substr(0, slash));
    const auto below = slash == std::string_view::npos ? 1 : parseNumber(all.substr(slash + 1));
    const auto isWhole = [](double number) {
        return number == std::round(number) && number >= 1 && number <= 1e6;
    };
    const bool isRate = value && below && *value >= 0.001 && *value / *below <= kHighest &&
                        (slash == std::string_view::npos || (isWhole(*value) && isWhole(*below)));
    if (!isRate)
        fail(ExitCode::usage, "{} takes frames a second, as 25 or 30000/1001, not '{}'", option, text);
    if (slash != std::string_view::npos) return {int(*value), int(*below)};
    // What television rounds to two digits is a thousandth below a whole number.
    const double whole = std::round(*value);
    if (std::abs(*value - whole / 1.001) < 0.005 && *value != whole) return {int(whole) * 1000, 1001};
    const auto thousandths = int(std::lround(*value * 1000));
    const int common = std::gcd(thousandths, 1000);
    return {thousandths / common, 1000 / common};
}

std::string rateText(const Rational& rate) {
    return rate.denominator == 1 ? fmt::format("{}", rate.numerator)
                                 : fmt::format("{}/{}", rate.numerator, rate.denominator);
}

}  // namespace qv::host
