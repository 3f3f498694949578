#include <algorithm>
#include <array>

#include "QVFilterExtension/Resources/Assets/Fonts/Typefaces.h"

namespace qv::assets {
namespace {

// Characters as a recorder's display chip holds them: five dots by seven, top row first, a digit of base 32 a
// row, whose bits are the dots from left to right. Dots are 100 units wide.
constexpr int kColumns = 5, kRows = 7, kHalfDot = 50, kAdvance = 600;

struct DotGlyph {
    char32_t character;
    const char* rows;
};

constexpr DotGlyph kGlyphs[] = {
    {U' ', "0000000"},  {U'!', "4444404"}, {U'"', "AAA0000"},  {U'#', "AAVAVAA"}, {U'$', "4FKE5U4"},
    {U'%', "OP248J3"},  {U'&', "CIK8LID"}, {U'\'', "4480000"}, {U'(', "2488842"}, {U')', "8422248"},
    {U'*', "04LELL4"},  {U'+', "044V440"}, {U',', "0000C48"},  {U'-', "000V000"}, {U'.', "00000CC"},
    {U'/', "01248G0"},  {U'0', "EHHHHHE"}, {U'1', "4C4444E"},  {U'2', "EH1248V"}, {U'3', "V2421HE"},
    {U'4', "26AIV22"},  {U'5', "VGU11HE"}, {U'6', "68GUHHE"},  {U'7', "V124888"}, {U'8', "EHHEHHE"},
    {U'9', "EHHF12C"},  {U':', "0CC0CC0"}, {U';', "0CC0C48"},  {U'<', "248G842"}, {U'=', "00V0V00"},
    {U'>', "8421248"},  {U'?', "EH12404"}, {U'@', "EHNLNGE"},  {U'A', "4AHHVHH"}, {U'B', "UHHUHHU"},
    {U'C', "EHGGGHE"},  {U'D', "SIHHHIS"}, {U'E', "VGGUGGV"},  {U'F', "VGGUGGG"}, {U'G', "EHGNHHF"},
    {U'H', "HHHVHHH"},  {U'I', "E44444E"}, {U'J', "72222IC"},  {U'K', "HIKOKIH"}, {U'L', "GGGGGGV"},
    {U'M', "HRLLHHH"},  {U'N', "HHPLJHH"}, {U'O', "EHHHHHE"},  {U'P', "UHHUGGG"}, {U'Q', "EHHHLID"},
    {U'R', "UHHUKIH"},  {U'S', "FGGE11U"}, {U'T', "V444444"},  {U'U', "HHHHHHE"}, {U'V', "HHHHHA4"},
    {U'W', "HHHLLLA"},  {U'X', "HHA4AHH"}, {U'Y', "HHHA444"},  {U'Z', "V1248GV"}, {U'[', "E88888E"},
    {U'\\', "0G84210"}, {U']', "E22222E"}, {U'^', "4AH0000"},  {U'_', "000000V"}, {U'`', "8420000"},
    {U'{', "2448442"},  {U'|', "4444444"}, {U'}', "8442448"},  {U'~', "008L200"},
};

using Dots = std::array<std::array<bool, 2 * kColumns>, 2 * kRows>;

/// Half dots: each dot is four, and where two dots touch by a corner alone, the halves beside it are lit as
/// well.
Dots rounded(const char* rows) {
    std::array<std::array<bool, kColumns + 2>, kRows + 2> dots{};
    for (int y = 0; y < kRows; ++y) {
        const int bits = rows[y] <= '9' ? rows[y] - '0' : rows[y] - 'A' + 10;
        for (int x = 0; x < kColumns; ++x)
            dots[std::size_t(y + 1)][std::size_t(x + 1)] = bits >> (kColumns - 1 - x) & 1;
    }
    Dots halves{};
    for (int y = 0; y < 2 * kRows; ++y)
        for (int x = 0; x < 2 * kColumns; ++x) {
            const int dx = x % 2 ? 1 : -1, dy = y % 2 ? 1 : -1;
            const auto lit = [&](int right, int down) {
                return dots[std::size_t(y / 2 + 1 + down)][std::size_t(x / 2 + 1 + right)];
            };
            halves[std::size_t(y)][std::size_t(x)] = lit(0, 0) || (lit(dx, 0) && lit(0, dy) && !lit(dx, dy));
        }
    return halves;
}

/// One rectangle for each row of lit halves.
std::vector<OutlineContour> outline(const Dots& halves) {
    std::vector<OutlineContour> contours;
    for (int y = 0; y < 2 * kRows; ++y)
        for (int x = 0; x < 2 * kColumns;) {
            int end = x;
            while (end < 2 * kColumns && halves[std::size_t(y)][std::size_t(end)]) ++end;
            if (end > x) {
                const int left = kHalfDot * (x + 1), right = kHalfDot * (end + 1);
                const int top = kHalfDot * (2 * kRows - y), bottom = top - kHalfDot;
                contours.push_back(
                    {{left, bottom, true}, {left, top, true}, {right, top, true}, {right, bottom, true}});
            }
            x = std::max(end, x + 1);
        }
    return contours;
}

}  // namespace

FontDescription vcrOsdMono() {
    FontDescription font{"VCROSDMono", "VCR OSD Mono", "Regular", 1000, 800, -200, 0, 700, 700, {}};
    font.glyphs.push_back({0, kAdvance, outline(rounded("VHHHHHV"))});
    for (const DotGlyph& glyph : kGlyphs)
        font.glyphs.push_back({glyph.character, kAdvance, outline(rounded(glyph.rows))});
    // The chip has no small letters.
    for (char32_t small = U'a'; small <= U'z'; ++small)
        for (const DotGlyph& glyph : kGlyphs)
            if (glyph.character == small - U'a' + U'A')
                font.glyphs.push_back({small, kAdvance, outline(rounded(glyph.rows))});
    std::ranges::sort(font.glyphs, {}, &FontGlyph::character);
    return font;
}

}  // namespace qv::assets
