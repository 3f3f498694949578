#include "QVFilterExtension/Private/OnScreenDisplay.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <numbers>

#include "Platform/Drawing/BitmapCanvas.h"
#include "Platform/Foundation/NSCache.h"
#include "QVFilterExtension/Private/UIFont+QVMTIFilter.h"

namespace qv {

namespace {

constexpr double kUnits = 1080;
constexpr double kRim = 0.16;  // width of the rim, both sides together, in heights of the font

/// A glyph with its rim, `margin` pixels around its advance.
struct Glyph {
    SpiritParam::Texture picture;
    double width, margin;
};

Glyph glyphOf(char character, const UIFont& font) {
    // Digits of a few fonts and sizes; a host that changes its size often lets the oldest go.
    static auto& cache = *new NSCache<std::string, SpiritParam::Texture>(1024);
    const std::string text(1, character);
    const double size = font.pointSize(), margin = std::ceil(size * kRim);
    const double width = std::ceil(font.sizeOfText(text).width) + 2 * margin;
    const std::string key = fmt::format("{} {} {}", font.fontName(), size, character);
    return {cache.objectForKey(
                key,
                [&] {
                    BitmapCanvas canvas({width, std::ceil(font.lineHeight()) + 2 * margin});
                    const UIBezierPath path = BitmapCanvas::pathForText(text, {margin, margin}, font);
                    for (const double share : {1.0, 0.6})
                        canvas.strokePath(path, UIColor(0, 0, 0, 0.22), size * kRim * share, LineCap::round,
                                          LineJoin::round);
                    canvas.fillPath(path, UIColor(1, 1, 1));
                    return SpiritParam::spiritTextureWithImage(canvas.image(), text);
                }),
            width, margin};
}

/// Sizes are whole pixels, at least one.
UIFont pixelFont(const std::string& fontName, double pixels) {
    return qv_fontWithFileName(fontName, std::max(1.0, std::round(pixels)));
}

using Seconds = std::chrono::sys_seconds;
Seconds momentOf(double seconds) {
    // Calendars end somewhere; ours after thirty thousand years.
    constexpr double kLast = 1e12;
    if (!std::isfinite(seconds)) seconds = 0;
    return Seconds(std::chrono::seconds(std::int64_t(std::floor(std::clamp(seconds, -kLast, kLast)))));
}

}  // namespace

OnScreenDisplay::OnScreenDisplay(CGSize size)
    : size_(size), unit_(std::max(std::min(size.width, size.height) / kUnits, 1e-9)) {}

void OnScreenDisplay::add(const SpiritParam::Texture& picture, CGPoint centerPixel, double widthPixels,
                          int quarterTurns, float alpha) {
    if (!picture || !(widthPixels > 0)) return;
    const double scale = widthPixels / size_.width;
    const CGAffineTransform placed = CGAffineTransformConcat(
        CGAffineTransformConcat(CGAffineTransformMakeScale(scale, scale),
                                CGAffineTransformMakeRotation(quarterTurns * std::numbers::pi / 2)),
        CGAffineTransformMakeTranslation(2 * centerPixel.x / size_.width - 1,
                                         (size_.height - 2 * centerPixel.y) / size_.width));
    sprites_.push_back(SpiritParam::paramWithTrans(placed, alpha, picture));
}

void OnScreenDisplay::addText(const std::string& text, CGPoint origin, const std::string& fontName,
                              double fontSize, float alpha) {
    // Text below this size says nothing and would be larger than what it stands beside.
    constexpr double kSmallestPixels = 4;
    if (fontSize * unit_ < kSmallestPixels) return;
    const UIFont font = pixelFont(fontName, fontSize * unit_);
    const double height = std::ceil(font.lineHeight());
    double left = origin.x * unit_;
    const double top = std::round(origin.y * unit_);
    for (const char character : text) {
        if (character != ' ') {
            const Glyph glyph = glyphOf(character, font);
            const double x = std::round(left) - glyph.margin;
            add(glyph.picture, {x + glyph.width / 2, top + height / 2}, glyph.width, 0, alpha);
        }
        left += font.sizeOfText(std::string(1, character)).width;
    }
}

double OnScreenDisplay::widthOfText(const std::string& text, const std::string& fontName,
                                    double fontSize) const {
    double width = 0;
    const UIFont font = pixelFont(fontName, fontSize * unit_);
    for (const char character : text) width += font.sizeOfText(std::string(1, character)).width;
    return width / unit_;
}

void OnScreenDisplay::addPicture(const SpiritParam::Texture& picture, CGPoint center, double pictureWidth,
                                 int quarterTurns, float alpha) {
    add(picture, {center.x * unit_, center.y * unit_}, pictureWidth * unit_, quarterTurns, alpha);
}

std::string recorderDate(double seconds) {
    static constexpr std::array kMonths{"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                        "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    static constexpr std::array kDays{"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};
    const auto day = std::chrono::floor<std::chrono::days>(momentOf(seconds));
    const std::chrono::year_month_day date(day);
    return fmt::format("{} {:02} {}", kMonths[unsigned(date.month()) - 1], unsigned(date.day()),
                       kDays[std::chrono::weekday(day).c_encoding()]);
}

std::string recorderTime(double seconds) {
    const Seconds moment = momentOf(seconds);
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(
                             moment - std::chrono::floor<std::chrono::days>(moment))
                             .count();
    const auto hours = minutes / 60;
    return fmt::format("{} {:02}:{:02}", hours < 12 ? "AM" : "PM", (hours + 11) % 12 + 1, minutes % 60);
}

std::string counterText(double seconds) {
    constexpr double kHundredHours = 360000;
    const auto whole = std::isfinite(seconds) ? int(std::fmod(std::max(seconds, 0.0), kHundredHours)) : 0;
    return fmt::format("{:02}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

}  // namespace qv
