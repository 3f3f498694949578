#pragma once

#include <functional>
#include <string_view>

#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

/// Lettering of straight strokes, as machines expose it on the edge of film or engrave it. Characters are 4
/// units wide and 6 high, with 2 units between them; unknown ones are blanks.
inline constexpr float kPrintAdvance = 6, kPrintHeight = 6;

struct PrintPoint {
    float x, y;
};

/// Width of a line of text in units.
inline float printWidth(std::string_view text) {
    return kPrintAdvance * float(text.size()) - 2;
}

/// Draws a line of text as coverage 0..1. `place` maps a place in the line, in units from its top left
/// corner, to a pixel; `width` is that of the strokes, pixels.
void printText(Raster<float>& layer, std::string_view text, float width,
               const std::function<PrintPoint(float x, float y)>& place);

/// Text along a straight line: its top left corner at a pixel, a unit as long as `unit` pixels, turned by
/// quarters clockwise.
void printLine(Raster<float>& layer, std::string_view text, float x, float y, float unit, int quarters = 0);

/// A straight stroke of coverage 1.
void printStroke(Raster<float>& layer, PrintPoint from, PrintPoint to, float width);

/// The layer blurred about as a Gaussian of the given standard deviation, pixels.
Raster<float> blurred(const Raster<float>& layer, float sigma);

}  // namespace qv::assets
