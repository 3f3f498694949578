#pragma once

#include <string>
#include <vector>

#include "Platform/Geometry/Geometry.h"
#include "QVFilterCore/SpiritParam.h"

namespace qv {

/// Text and marks over a frame as cameras and recorders show them, laid out as sprites. Lengths are units of
/// which the frame's shorter side has 1080; the origin is the frame's top left corner, y down.
///
/// Glyphs are drawn at the size at which they are seen and stand on whole pixels, so text is crisp on every
/// frame. They are kept by the process and shared: a counter draws no pictures once it has shown ten digits.
class OnScreenDisplay {
  public:
    /// For a frame of `size` pixels.
    explicit OnScreenDisplay(CGSize size);

    /// The frame's sides in units.
    double width() const { return size_.width / unit_; }
    double height() const { return size_.height / unit_; }

    /// One line in a font of the bundle, its letters `fontSize` units high in all; `origin` is the top left
    /// corner of its line box. White, with a soft dark rim that keeps it legible in the lights.
    void addText(const std::string& text, CGPoint origin, const std::string& fontName, double fontSize,
                 float alpha = 1);
    /// Width of a line in units.
    double widthOfText(const std::string& text, const std::string& fontName, double fontSize) const;

    /// A picture `pictureWidth` units wide about its middle, turned by quarters anticlockwise. Nil adds
    /// nothing.
    void addPicture(const SpiritParam::Texture& picture, CGPoint center, double pictureWidth,
                    int quarterTurns = 0, float alpha = 1);

    /// What was added, the lowest first.
    const std::vector<SpiritParam>& sprites() const { return sprites_; }

  private:
    void add(const SpiritParam::Texture& picture, CGPoint centerPixel, double widthPixels, int quarterTurns,
             float alpha);

    CGSize size_;
    double unit_;
    std::vector<SpiritParam> sprites_;
};

/// A moment as a recorder dates it, from seconds since 1970-01-01 00:00 on the clock that is to be shown:
/// "OCT 12 SAT" (MMM dd EEE) and "PM 01:20" (a hh:mm), in English. A number that is no time counts as 0.
std::string recorderDate(double seconds);
std::string recorderTime(double seconds);

/// Hours, minutes and seconds, two digits each: "00:06:18". Starts again after 100 hours; a negative time or
/// NaN counts as 0.
std::string counterText(double seconds);

}  // namespace qv
