#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Platform/Media/ImageFile.h"

namespace qv {
namespace {

TEST(FilmFrames, LeaveThePictureFreeAndCoverItsBorder) {
    const struct {
        const char* name;
        int coveredX, coveredY;          ///< a place that shows no picture
        int perforationX, perforationY;  ///< or negative
    } frames[] = {{"transitions_flim_06.png", 960, 150, 168, 78},
                  {"transitions_flim_02_word.png", 960, 150, 240, 92},
                  {"transitions_film_frame_01.png", 150, 400, 150, 270},
                  {"trans_Film_frame01_2.png", 100, 100, 132, 540},
                  {"transitions_flim_lens3.png", 200, 200, -1, -1},
                  {"transitions_CameraFrame.png", 90, 88, -1, -1}};
    for (const auto& frame : frames) {
        SCOPED_TRACE(frame.name);
        std::string error;
        const Bitmap bitmap = readImageFile(std::string(QV_ASSET_BUNDLE "/") + frame.name, &error);
        ASSERT_TRUE(bitmap) << error;
        ASSERT_EQ(bitmap.width, 1920);
        ASSERT_EQ(bitmap.height, 1080);
        const auto at = [&](int x, int y) { return bitmap.row(y) + 4 * x; };
        EXPECT_GT(at(frame.coveredX, frame.coveredY)[3], 200);
        double covered = 0;
        for (int y = 450; y < 630; ++y)
            for (int x = 860; x < 1060; ++x) covered += at(x, y)[3] / 255.0;
        EXPECT_LT(covered / (180 * 200), 0.03) << "only dust in the middle";
        if (frame.perforationX < 0) continue;
        const std::uint8_t* hole = at(frame.perforationX, frame.perforationY);
        EXPECT_GT(std::min({hole[0], hole[1], hole[2]}), 190) << "light behind the holes";
    }
}

}  // namespace
}  // namespace qv
