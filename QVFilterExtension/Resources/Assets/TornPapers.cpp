// Draws the pieces of torn paper that transitions move clips on.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterExtension/Resources/Assets/TornPapers/Stationery.h"
#include "QVFilterExtension/Resources/Assets/TornPapers/TornPaper.h"

using namespace qv;
using namespace qv::assets;

namespace {

// Sizes are for a frame of 1920×1080. A piece that is shown enlarged or reduced has a unit that makes up for
// it, so that fibres are equally fine throughout the transition.

/// Appears as it is.
const TornPiece kSmallScrap{360,
                            264,
                            0.9f,
                            {{-118, -66, 10},
                             {-96, -82, 10},
                             {60, -92, 7},
                             {118, -70, 15},
                             {130, -52, 15},
                             {118, 62, 10},
                             {98, 78, 12},
                             {-40, 84, 18},
                             {-124, 58, 9},
                             {-134, 36, 9}},
                            11};

/// Appears at about a third of its size.
const TornPiece kMediumScrap{1660,
                             1080,
                             2.6f,
                             {{-664, -316, 12},
                              {-628, -372, 12},
                              {-60, -420, 8},
                              {630, -386, 17},
                              {668, -340, 17},
                              {704, 262, 10},
                              {650, 344, 13},
                              {310, 398, 20},
                              {-640, 378, 14},
                              {-680, 312, 14}},
                             23};

/// Holds a photograph, and appears at 0.65 to 1 of its size. The photograph stays within 0.4 of the frame
/// from its middle, in frames up to 2 to 1: the clip covers no more when it is reduced to 0.8.
const TornPiece kPhoto{1340,
                       876,
                       1.25f,
                       {{-592, -302, 17},
                        {-566, -344, 17},
                        {-150, -374, 11},
                        {566, -354, 23},
                        {594, -320, 23},
                        {606, 308, 13},
                        {578, 342, 15},
                        {120, 372, 26},
                        {-548, 356, 18},
                        {-580, 318, 18}},
                       37};

/// Enters from the right and fills the frame's height: torn at its left, and at its right for frames wider
/// than 2.4 to 1, which it does not fill.
const TornPiece kSheet{2880,
                       1200,
                       1.2f,
                       {{-1318, -800, 22},
                        {1380, -800, 22},
                        {1380, 800, 22},
                        {-1336, 800, 26},
                        {-1312, 520, 18},
                        {-1356, 260, 28},
                        {-1308, -70, 24},
                        {-1352, -380, 20}},
                       53};

/// Prints have a window of half the reference frame, upright ones of half an upright frame; as much paper and
/// shadow lies around it.
constexpr int kPrintMargin = 110;
constexpr int kWindowLong = 960, kWindowShort = 540;

/// A print with a torn white border around a window.
Bitmap print(bool upright, std::uint32_t seed) {
    const int width = upright ? kWindowShort : kWindowLong, height = upright ? kWindowLong : kWindowShort;
    const float x = float(width) / 2 + 62, y = float(height) / 2 + 62;
    const TornPiece piece{width + 2 * kPrintMargin,
                          height + 2 * kPrintMargin,
                          0.9f,
                          {{-x, -y + 6, 13},
                           {-0.2f * x, -y - 5, 9},
                           {x - 4, -y, 16},
                           {x + 5, 0.3f * y, 10},
                           {x - 3, y, 12},
                           {0.1f * x, y + 6, 17},
                           {-x + 2, y - 4, 11},
                           {-x - 6, -0.2f * y, 9}},
                          seed,
                          PaperStock::white};
    return TornPaper(piece).framing(width, height);
}

/// A sheet of a notebook.
const TornPiece kNote{1500,
                      980,
                      1.2f,
                      {{-690, -400, 26},
                       {-300, -424, 15},
                       {240, -402, 30},
                       {690, -420, 18},
                       {700, 410, 10},
                       {120, 428, 12},
                       {-684, 416, 14}},
                      61,
                      PaperStock::ruled};

/// Torn along the top, wider than the frame; what lies below is the rest of the sheet.
TornPiece topEdge(std::uint32_t seed, PaperStock stock) {
    const float lean = seed % 2 ? 16 : -16;
    return {2200,
            460,
            1.3f,
            {{-1300, -90 + lean, 26},
             {-640, -112, 15},
             {-180, -70, 34},
             {420, -110 + lean, 20},
             {800, -82, 30},
             {1300, -100 - lean, 22},
             {1300, 900, 0},
             {-1300, 900, 0}},
            seed,
            stock};
}

/// Holes: a small one as a finger tears it, and a large one with wide lips.
const TornPiece kSmallHole{900,
                           640,
                           1.1f,
                           {{-250, -60, 22},
                            {-150, -170, 34},
                            {20, -130, 18},
                            {170, -190, 30},
                            {250, -20, 20},
                            {190, 150, 36},
                            {0, 120, 16},
                            {-180, 180, 28}},
                           71,
                           PaperStock::cream,
                           true};
const TornPiece kLargeHole{1500,
                           1060,
                           1.1f,
                           {{-560, -120, 34},
                            {-420, -330, 52},
                            {-120, -290, 26},
                            {180, -390, 48},
                            {430, -290, 30},
                            {570, 30, 40},
                            {440, 320, 56},
                            {60, 290, 24},
                            {-220, 380, 46},
                            {-500, 230, 30}},
                           73,
                           PaperStock::cream,
                           true};

/// A handful torn out of a poster.
const TornPiece kScrap{900,
                       860,
                       1.2f,
                       {{-280, -330, 34},
                        {40, -360, 20},
                        {330, -240, 44},
                        {290, 60, 24},
                        {350, 290, 38},
                        {-20, 350, 22},
                        {-330, 260, 40},
                        {-260, -40, 26}},
                       83};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_TornPapers DIRECTORY\n");
        return 1;
    }
    const TornPaper photo(kPhoto), sheet(kSheet), edge(topEdge(65, PaperStock::cream)), scrap(kScrap),
        smallHole(kSmallHole), largeHole(kLargeHole);
    constexpr int kPageSide = 1440;
    const struct {
        const char* name;
        Bitmap picture;
    } files[] = {
        {"trans_paper_small.png", TornPaper(kSmallScrap).blank()},
        {"trans_paper_medium.png", TornPaper(kMediumScrap).blank()},
        {"paper01_smallframe.png", photo.underPhoto()},
        {"paper01_viderSize.png", photo.face()},
        {"paper01_biggerButtom.png", sheet.underPhoto()},
        {"paper01_biggerSize.png", sheet.face()},
        {"paper02_note.png", TornPaper(kNote).blank()},
        {"paper02_print.png", print(false, 41)},
        {"paper02_print_V.png", print(true, 43)},
        {"paper02_tape.png", tape()},
        {"paper03_edgeRim.png", edge.rim()},
        {"paper03_edgeSize.png", edge.face()},
        {"paper03_kraft.png", TornPaper(topEdge(66, PaperStock::kraft)).blank()},
        {"paper04_page.jpg", page(kPageSide, {0.42f, 0.53f, 0.56f}, 91)},
        {"paper04_stamp.png", stampFraming(kWindowLong, kWindowShort, kPrintMargin)},
        {"paper04_stamp_V.png", stampFraming(kWindowShort, kWindowLong, kPrintMargin)},
        {"paper04_postmark.png", postmark()},
        {"paper05_smallHole.png", smallHole.opening()},
        {"paper05_smallRim.png", smallHole.rim()},
        {"paper05_largeHole.png", largeHole.opening()},
        {"paper05_largeRim.png", largeHole.rim()},
        {"paper06_page.jpg", page(kPageSide, {0.66f, 0.53f, 0.39f}, 95)},
        {"paper07_scrapRim.png", scrap.rim()},
        {"paper07_scrapSize.png", scrap.face()},
    };
    for (const auto& [name, picture] : files) {
        const std::string path = fmt::format("{}/{}", argv[1], name);
        std::string error;
        const bool written =
            path.ends_with(".jpg") ? writeJPEG(picture, path, 90, &error) : writePNG(picture, path, &error);
        if (!written) {
            fmt::print(stderr, "draw_TornPapers: {}: {}\n", name, error);
            return 1;
        }
    }
}
