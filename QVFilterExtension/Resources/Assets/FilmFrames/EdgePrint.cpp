#include "QVFilterExtension/Resources/Assets/FilmFrames/EdgePrint.h"

#include <cmath>

#include "QVFilterExtension/Resources/Assets/Support/Stroke.h"

namespace qv::assets {

namespace {

/// Lines through points of two digits, x and y; a blank begins a new line.
struct Character {
    char character;
    std::string_view lines;
};

constexpr Character kCharacters[] = {
    {'A', "062046 1434"},
    {'C', "4130100105163645"},
    {'D', "00204244260600"},
    {'E', "40000646 0333"},
    {'F', "400006 0333"},
    {'I', "2026"},
    {'K', "0006 400346"},
    {'L', "000646"},
    {'M', "0600234046"},
    {'N', "06004640"},
    {'O', "100105163645413010"},
    {'P', "06003041423303"},
    {'Q', "100105163645413010 2446"},
    {'R', "06003041423303 2346"},
    {'S', "413010010213334445361605"},
    {'T', "0040 2026"},
    {'U', "000516364540"},
    {'V', "002640"},
    {'X', "0046 4006"},
    {'Y', "002340 2326"},
    {'0', "100105163645413010"},
    {'1', "112026"},
    {'2', "01103041420646"},
    {'3', "004022324345361605"},
    {'4', "36300444"},
    {'5', "4000023243453606"},
    {'6', "30100105163645443303"},
    {'7', "004016"},
    {'8', "13020110304142331304051636454433"},
    {'9', "43130201103041453616"},
    {'-', "1333"},
    {'>', "00430600 0205"},
    {':', "2222 2525"},
    {'.', "2626"},
    {'/', "0640"},
};

std::string_view linesOf(char character) {
    for (const Character& each : kCharacters)
        if (each.character == character) return each.lines;
    return {};
}

/// The mean of `2 * radius + 1` neighbours of each pixel along a row, written transposed.
Raster<float> boxedTransposed(const Raster<float>& layer, int radius) {
    Raster<float> result(layer.height(), layer.width());
    for (int y = 0; y < layer.height(); ++y) {
        float sum = 0;
        for (int x = -radius; x <= radius; ++x) sum += layer.clamped(x, y);
        for (int x = 0; x < layer.width(); ++x) {
            result.at(y, x) = sum / float(2 * radius + 1);
            sum += layer.clamped(x + radius + 1, y) - layer.clamped(x - radius, y);
        }
    }
    return result;
}

}  // namespace

void printStroke(Raster<float>& layer, PrintPoint from, PrintPoint to, float width) {
    stroke(layer, from.x, from.y, to.x, to.y, width, width,
           [](float& pixel, float coverage) { pixel = std::max(pixel, coverage); });
}

void printText(Raster<float>& layer, std::string_view text, float width,
               const std::function<PrintPoint(float x, float y)>& place) {
    float left = 0;
    for (const char character : text) {
        const std::string_view lines = linesOf(character);
        const auto pointAt = [&](std::size_t i) {
            return place(left + float(lines[i] - '0'), float(lines[i + 1] - '0'));
        };
        for (std::size_t i = 0; i + 3 < lines.size();) {
            if (lines[i] == ' ') {
                ++i;
            } else if (lines[i + 2] == ' ') {
                i += 2;
            } else {
                printStroke(layer, pointAt(i), pointAt(i + 2), width);
                i += 2;
            }
        }
        left += kPrintAdvance;
    }
}

void printLine(Raster<float>& layer, std::string_view text, float x, float y, float unit, int quarters) {
    printText(layer, text, 0.85f * unit, [=](float along, float down) {
        along *= unit, down *= unit;
        for (int i = 0; i < quarters; ++i) {
            const float turned = -down;
            down = along;
            along = turned;
        }
        return PrintPoint{x + along, y + down};
    });
}

Raster<float> blurred(const Raster<float>& layer, float sigma) {
    // Three boxes of side n have a variance of (n² − 1) / 4. Two passes transpose back.
    const int radius = std::max(1, int(std::lround((std::sqrt(4 * sigma * sigma + 1) - 1) / 2)));
    Raster<float> result = layer;
    for (int pass = 0; pass < 6; ++pass) result = boxedTransposed(result, radius);
    return result;
}

}  // namespace qv::assets
