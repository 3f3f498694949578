#pragma once

#include <memory>
#include <string>

#include "Platform/Geometry/Geometry.h"

namespace qv {

/// A typeface at a size in points. A cheap, thread-safe value; nil when default-constructed. A size that is
/// not positive is 0: such text has no extent.
class UIFont {
  public:
    struct Face;  ///< a typeface of a loaded font file

    UIFont() = default;

    /// A font registered with this process, by PostScript name; nil when there is none. Fonts of the machine
    /// are not searched, so that a picture is the same on every machine.
    static UIFont fontWithName(const std::string& postScriptName, double size);
    /// The machine's default sans-serif font; when it has none, a font without glyphs that still measures.
    static UIFont systemFontOfSize(double size);
    /// Makes every face of a font file available to `fontWithName`. False with the cause in `error` on
    /// failure; a file that is already registered, or one with a face whose name is taken, is a failure too
    /// and adds nothing.
    static bool registerFontFile(const std::string& path, std::string* error);

    explicit operator bool() const { return face_ != nullptr; }
    /// The PostScript name.
    const std::string& fontName() const;
    /// The size in points, 0 or more.
    double pointSize() const { return size_; }
    /// Distances from the baseline in points, positive upwards: the descender is negative as a rule.
    double ascender() const;
    double descender() const;
    /// Ascender less descender.
    double lineHeight() const;
    /// Advance width and line height of one line of UTF-8 text, in points.
    CGSize sizeOfText(const std::string& utf8) const;

    /// For the canvas that draws with it; nil for a nil font.
    const std::shared_ptr<const Face>& face() const { return face_; }

  private:
    UIFont(std::shared_ptr<const Face> face, double size);
    std::shared_ptr<const Face> face_;
    double size_ = 0;
};

}  // namespace qv
