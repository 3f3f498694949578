#include "Host/Edit/Project.h"

#include <charconv>
#include <cmath>

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

double parseGain(const std::string& option, const std::string& text) {
    std::string_view rest = text;
    const auto value = leadingNumber(rest);
    const double gain = rest == "dB" ? std::pow(10, value.value_or(0) / 20) : value.value_or(-1);
    if (!value || (!rest.empty() && rest != "dB") || gain < 0 || gain > 100)
        fail(ExitCode::usage, "{} takes a factor of 0 to 100, or decibels as -6dB, not '{}'", option, text);
    return gain;
}

}  // namespace qv::host
