// The pieces of torn paper: pictures of one piece fit each other, and fit the frames that they are drawn in.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Platform/Media/ImageFile.h"

namespace qv {
namespace {

Bitmap asset(const std::string& name) {
    std::string error;
    Bitmap bitmap = readImageFile(std::string(QV_ASSET_BUNDLE "/") + name, &error);
    if (!bitmap) ADD_FAILURE() << name << ": " << error;
    return bitmap;
}

int alphaAt(const Bitmap& bitmap, int x, int y) {
    return bitmap.row(y)[x * 4 + 3];
}

TEST(TornPapers, PhotographsLieWithinTheirPaper) {
    for (const auto& [shapeName, paperName] :
         {std::pair{"paper01_viderSize.png", "paper01_smallframe.png"},
          std::pair{"paper01_biggerSize.png", "paper01_biggerButtom.png"}}) {
        const Bitmap shape = asset(shapeName), paper = asset(paperName);
        ASSERT_TRUE(shape && paper);
        ASSERT_EQ(shape.width, paper.width);
        ASSERT_EQ(shape.height, paper.height);
        int outside = 0;
        double lip = 0, shadow = 0;
        for (int y = 0; y < shape.height; ++y) {
            for (int x = 0; x < shape.width; ++x) {
                const int photo = alphaAt(shape, x, y), sheet = alphaAt(paper, x, y);
                outside += photo > 0 && sheet < 250;
                lip += photo < 128 && sheet > 250;
                shadow += sheet > 0 && sheet < 128;
            }
        }
        EXPECT_EQ(outside, 0) << paperName;
        EXPECT_GT(lip / shape.height, 20) << paperName;
        EXPECT_GT(shadow / shape.height, 20) << paperName;
    }
}

TEST(TornPapers, EndWithinTheirPictures) {
    for (const char* name : {"trans_paper_small.png", "trans_paper_medium.png", "paper01_smallframe.png"}) {
        const Bitmap paper = asset(name);
        ASSERT_TRUE(paper);
        EXPECT_LE(paper.width, 1920) << "more than a frame shows";
        EXPECT_LE(paper.height, 1080);
        int most = 0;
        for (int x = 0; x < paper.width; ++x)
            most = std::max({most, alphaAt(paper, x, 0), alphaAt(paper, x, paper.height - 1)});
        for (int y = 0; y < paper.height; ++y)
            most = std::max({most, alphaAt(paper, 0, y), alphaAt(paper, paper.width - 1, y)});
        EXPECT_LE(most, 3) << name << " is cut off";
    }
    const Bitmap shape = asset("paper01_viderSize.png");
    ASSERT_TRUE(shape);
    for (int y = 0; y < shape.height; ++y) {
        for (int x = 0; x < shape.width; ++x) {
            const bool beyond = std::abs(x + 0.5 - shape.width / 2.0) > 0.4 * 1920 ||
                                std::abs(y + 0.5 - shape.height / 2.0) > 0.4 * 960;
            ASSERT_FALSE(beyond && alphaAt(shape, x, y) > 0)
                << "the clip at 0.8 does not reach " << x << ", " << y;
        }
    }
}

TEST(TornPapers, SheetFillsTheFramesHeight) {
    const Bitmap shape = asset("paper01_biggerSize.png");
    ASSERT_TRUE(shape);
    EXPECT_GE(double(shape.width) / shape.height, 2.35);
    for (const int y : {0, shape.height - 1}) {
        // Torn at the left, and nothing missing from there to the end of a frame of 16 to 9, moved by 0.05.
        EXPECT_EQ(alphaAt(shape, 0, y), 0);
        for (int x = shape.height / 5; x < shape.height * 16 / 9; ++x)
            ASSERT_EQ(alphaAt(shape, x, y), 255) << x;
    }
}

}  // namespace
}  // namespace qv
