// Draws the pieces of torn paper that transitions move clips on.

#include <string>

#include <fmt/format.h>

#include "Platform/Media/ImageFile.h"
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

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_TornPapers DIRECTORY\n");
        return 1;
    }
    const TornPaper photo(kPhoto), sheet(kSheet);
    const struct {
        const char* name;
        Bitmap picture;
    } files[] = {{"trans_paper_small.png", TornPaper(kSmallScrap).blank()},
                 {"trans_paper_medium.png", TornPaper(kMediumScrap).blank()},
                 {"paper01_smallframe.png", photo.underPhoto()},
                 {"paper01_viderSize.png", photo.face()},
                 {"paper01_biggerButtom.png", sheet.underPhoto()},
                 {"paper01_biggerSize.png", sheet.face()}};
    for (const auto& file : files) {
        std::string error;
        if (!writePNG(file.picture, fmt::format("{}/{}", argv[1], file.name), &error)) {
            fmt::print(stderr, "draw_TornPapers: {}: {}\n", file.name, error);
            return 1;
        }
    }
}
