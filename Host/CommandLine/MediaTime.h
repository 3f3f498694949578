#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Media/ClipInfo.h"

/// How times and frame rates are written.
namespace qv::host {

/// Frames a second where a clip does not tell: of pictures.
inline constexpr int kRateOfPictures = 30;

/// A time or a length as a user gives it: in seconds, or in frames of what it is counted on.
struct MediaTime {
    double value = 0;
    bool isFrames = false;

    /// At `rate` frames a second; a rate of 0 is taken as kRateOfPictures.
    double seconds(double rate) const;
    /// As parseMediaTime() reads it: "2.5" or "120f".
    std::string text() const;
    bool operator==(const MediaTime&) const = default;
};

/// Seconds, or [hours:]minutes:seconds. `option` names it in the error. Fails as usage.
double parseTime(const std::string& option, const std::string& text);

/// The same, or frames as "120f". Fails as usage.
MediaTime parseMediaTime(const std::string& option, const std::string& text);

/// What is given as an option; nothing for an empty text. Fails as usage, also for a negative time.
std::optional<MediaTime> parseGivenTime(const std::string& option, const std::string& text);

/// Frames a second from "25", "29.97" or "30000/1001", up to 1000. `option` names it in the error. Fails as
/// usage.
Rational parseRate(const std::string& option, const std::string& text);
/// As parseRate() reads it.
std::string rateText(const Rational& rate);

}  // namespace qv::host
