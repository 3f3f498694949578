#include "Host/Edit/Project.h"

#include <charconv>
#include <cmath>
#include <numeric>

namespace qv::host {

namespace {

std::optional<double> leadingNumber(std::string_view& text) {
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || !std::isfinite(value)) return std::nullopt;
    text.remove_prefix(std::size_t(end - text.data()));
    return value;
}

}  // namespace

Rational parseRate(const std::string& option, const std::string& text) {
    constexpr double kHighest = 1000;
    std::string_view rest = text;
    const auto wrong = [&] {
        fail(ExitCode::usage, "{} takes frames a second, as 25 or 30000/1001, not '{}'", option, text);
    };
    const auto value = leadingNumber(rest);
    if (!value || *value <= 0) wrong();
    if (rest.empty()) {
        if (*value > kHighest) wrong();
        // What television rounds to two digits is a thousandth below a whole number.
        const double whole = std::round(*value);
        if (std::abs(*value - whole / 1.001) < 0.005 && *value != whole) return {int(whole) * 1000, 1001};
        const auto thousandths = int(std::lround(*value * 1000));
        if (thousandths < 1) wrong();
        const int common = std::gcd(thousandths, 1000);
        return {thousandths / common, 1000 / common};
    }
    const double numerator = *value;
    const bool isFraction = rest.front() == '/';
    rest.remove_prefix(1);
    const auto denominator = leadingNumber(rest);
    const auto isWhole = [](double number) {
        return number == std::round(number) && number >= 1 && number <= 1e6;
    };
    if (!isFraction || !rest.empty() || !denominator || !isWhole(numerator) || !isWhole(*denominator) ||
        numerator / *denominator > kHighest) {
        wrong();
    }
    return {int(numerator), int(*denominator)};
}

std::string rateText(const Rational& rate) {
    return rate.denominator == 1 ? fmt::format("{}", rate.numerator)
                                 : fmt::format("{}/{}", rate.numerator, rate.denominator);
}

double parseGain(const std::string& option, const std::string& text) {
    std::string_view rest = text;
    const auto value = leadingNumber(rest);
    const double gain = rest == "dB" ? std::pow(10, value.value_or(0) / 20) : value.value_or(-1);
    if (!value || (!rest.empty() && rest != "dB") || gain < 0 || gain > 100)
        fail(ExitCode::usage, "{} takes a factor of 0 to 100, or decibels as -6dB, not '{}'", option, text);
    return gain;
}

}  // namespace qv::host
