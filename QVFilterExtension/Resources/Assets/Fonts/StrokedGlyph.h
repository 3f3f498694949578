#pragma once

#include <span>
#include <vector>

#include "QVFilterExtension/Resources/Assets/Fonts/TrueTypeFile.h"

namespace qv::assets {

/// One glyph as the middle lines of its strokes, in font units, y up.
///
/// `strokes` is a list of commands and numbers:
///   M x y            starts a stroke          L x y   a line
///   H x y, V x y     a quarter of a rounded oval that leaves horizontally, or vertically
///   C x1 y1 x2 y2 x y   a cubic curve         Z       closes the stroke
///   P r x y x y ...  a stroke along straight lines with corners rounded by r; O r ... the same, closed
///   D x y r          a dot
///   B low high       cuts the strokes that follow to a band of heights; ends that lie on its edge are cut
///   along it
/// Ends are flat, joints round.
struct GlyphSkeleton {
    char32_t character;
    const char* strokes;
    int left, right;  ///< side bearings
    int advance = 0;  ///< when given, the glyph is centred in it and the bearings do not count
};

struct StrokeStyle {
    double width;
    double roundness;  ///< of H and V: 0.5523 is an ellipse, more is squarer
};

/// Expands each glyph's strokes to the outline of their union.
std::vector<FontGlyph> strokedGlyphs(std::span<const GlyphSkeleton> skeletons, const StrokeStyle& style);

}  // namespace qv::assets
