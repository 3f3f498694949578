#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qv::assets {

/// Font units; y up, 0 on the baseline. Points off the curve are controls of quadratic curves.
struct OutlinePoint {
    int x, y;
    bool onCurve;
    bool operator==(const OutlinePoint&) const = default;
};
/// Closed; ink lies to the right of the way round.
using OutlineContour = std::vector<OutlinePoint>;

struct FontGlyph {
    char32_t character;  ///< 0 for the glyph that stands in for missing ones, which comes first
    int advance;
    std::vector<OutlineContour> contours;
};

struct FontDescription {
    std::string postScriptName, familyName, styleName;
    int unitsPerEm = 1000;
    int ascender, descender, lineGap;  ///< the descender is negative
    int capHeight, xHeight;
    std::vector<FontGlyph> glyphs;  ///< in the order of their characters, all below U+FFFF
};

/// The bytes of a TrueType font file.
std::vector<std::uint8_t> trueTypeFile(const FontDescription& font);

}  // namespace qv::assets
