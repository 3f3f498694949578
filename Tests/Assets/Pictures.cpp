// The drawn pictures: pieces of torn paper, film frames, the greys of dissolves and colour tables.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
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

TEST(FilmFrames, LeaveThePictureFreeAndCoverItsBorder) {
    const struct {
        const char* name;
        int coveredX, coveredY;  ///< a place that shows no picture
    } frames[] = {{"transitions_flim_06.png", 960, 150},       {"transitions_flim_02_word.png", 960, 150},
                  {"transitions_film_frame_01.png", 150, 400}, {"trans_Film_frame01_2.png", 100, 100},
                  {"transitions_flim_lens3.png", 200, 200},    {"transitions_CameraFrame.png", 90, 88}};
    for (const auto& frame : frames) {
        SCOPED_TRACE(frame.name);
        const Bitmap bitmap = asset(frame.name);
        ASSERT_TRUE(bitmap);
        const auto at = [&](int x, int y) { return bitmap.row(y) + 4 * x; };
        EXPECT_GT(at(frame.coveredX, frame.coveredY)[3], 200);
        double covered = 0;
        for (int y = bitmap.height / 2 - 90; y < bitmap.height / 2 + 90; ++y)
            for (int x = bitmap.width / 2 - 100; x < bitmap.width / 2 + 100; ++x)
                covered += at(x, y)[3] / 255.0;
        EXPECT_LT(covered / (180 * 200), 0.03) << "only dust in the middle";
    }
}

TEST(PhotoDissolves, SpreadTheirGreysEvenly) {
    for (const char* set : {"flow", "fade", "facula", "stroke", "radial"}) {
        for (int index = 0; index < 4; ++index) {
            const std::string name = std::string("tran_photo_") + set + "_0" + std::to_string(index) + ".png";
            SCOPED_TRACE(name);
            const Bitmap bitmap = asset(name);
            // Thirds of a code: the mean of three channels that hardly differ.
            std::array<double, 766> counts{};
            int widest = 0;
            for (int y = 0; y < bitmap.height; ++y) {
                for (int x = 0; x < bitmap.width; ++x) {
                    const std::uint8_t* p = bitmap.row(y) + x * 4;
                    widest = std::max(widest, p[2] - p[0]);
                    ++counts[std::size_t(p[0] + p[1] + p[2])];
                }
            }
            EXPECT_LE(widest, 1) << "grey";
            double passed = 0, worst = 0;
            for (std::size_t i = 0; i < counts.size(); ++i) {
                passed += counts[i] / (bitmap.width * bitmap.height);
                worst = std::max(worst, std::abs(passed - double(i) / 765));
            }
            EXPECT_LT(worst, 0.01) << "a dissolve that runs unevenly";
        }
    }
}

class Lookups : public testing::Test {
  protected:
    static Bitmap table(const std::string& name) { return asset("lookup_" + name + ".png"); }
    struct Color {
        int r, g, b;
        double luma() const { return 0.2126 * r + 0.7152 * g + 0.0722 * b; }
    };
    /// What the table makes of a colour given in levels 0..63.
    static Color at(const Bitmap& table, int r, int g, int b) {
        const std::uint8_t* p = table.row(b / 8 * 64 + g) + (b % 8 * 64 + r) * 4;
        return {p[0], p[1], p[2]};
    }
};

TEST_F(Lookups, IdentityIsExact) {
    const Bitmap identity = table("identity");
    int wrong = 0;
    for (int i = 0; i < 64 * 64 * 64; ++i) {
        const int r = i % 64, g = i / 64 % 64, b = i / 4096;
        const Color c = at(identity, r, g, b);
        // 255 × level / 63, rounded, in whole numbers.
        const auto code = [](int level) { return (2 * 255 * level + 63) / 126; };
        wrong += c.r != code(r) || c.g != code(g) || c.b != code(b);
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(Lookups, LooksKeepBlackAndWhiteAndTheOrderOfGreys) {
    for (const char* name : {"golden", "silver"}) {
        SCOPED_TRACE(name);
        const Bitmap look = table(name);
        EXPECT_LT(at(look, 0, 0, 0).luma(), 6);
        EXPECT_GT(at(look, 63, 63, 63).luma(), 248);
        for (int level = 1; level < 64; ++level)
            EXPECT_GE(at(look, level, level, level).luma(),
                      at(look, level - 1, level - 1, level - 1).luma() - 0.5)
                << level;
        // A contrast curve: the lower quarter darker, the upper one lighter.
        EXPECT_LT(at(look, 16, 16, 16).luma(), 255 * 16 / 63.0);
        EXPECT_GT(at(look, 47, 47, 47).luma(), 255 * 47 / 63.0);
    }
}

TEST_F(Lookups, LooksHaveTheirColours) {
    const Bitmap golden = table("golden"), silver = table("silver");
    const Color shadow = at(golden, 14, 14, 14), light = at(golden, 48, 48, 48);
    EXPECT_GT(shadow.b, shadow.r + 4);
    EXPECT_GT(shadow.g, shadow.r);
    EXPECT_GT(light.r, light.b + 12);
    for (int i = 0; i < 1000; ++i) {
        const Color c = at(silver, i % 10 * 7, i / 10 % 10 * 7, i / 100 * 7);
        EXPECT_TRUE(c.r <= c.g && c.g <= c.b && c.b <= c.r + 12) << i;
    }
    EXPECT_GT(at(silver, 32, 32, 32).b, at(silver, 32, 32, 32).r);
}

}  // namespace
}  // namespace qv
