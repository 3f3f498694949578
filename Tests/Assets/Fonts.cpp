#include <ft2build.h>
#include <gtest/gtest.h>
#include FT_FREETYPE_H
#include FT_BBOX_H
#include FT_OUTLINE_H

#include <cstdlib>
#include <numeric>
#include <set>

#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

class Fonts : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        ASSERT_EQ(FT_Init_FreeType(&library_), 0);
        path_ = std::string(QV_ASSET_BUNDLE "/") + GetParam() + ".ttf";
        ASSERT_EQ(FT_New_Face(library_, path_.c_str(), 0, &face_), 0) << path_;
    }
    void TearDown() override { FT_Done_FreeType(library_); }

    /// The glyph's outline in font units.
    FT_GlyphSlot glyph(FT_ULong character) {
        EXPECT_EQ(FT_Load_Char(face_, character, FT_LOAD_NO_SCALE), 0) << character;
        return face_->glyph;
    }
    /// Ink in square font units: the coverage of a drawing of one pixel a unit.
    double area(FT_ULong character) {
        EXPECT_EQ(FT_Set_Pixel_Sizes(face_, 0, face_->units_per_EM), 0);
        EXPECT_EQ(FT_Load_Char(face_, character, FT_LOAD_RENDER | FT_LOAD_NO_HINTING), 0) << character;
        const FT_Bitmap& drawn = face_->glyph->bitmap;
        return std::accumulate(drawn.buffer, drawn.buffer + drawn.rows * unsigned(drawn.pitch), 0.0) / 255;
    }

    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
    std::string path_;
};

TEST_P(Fonts, LoadUnderTheNameOfTheFile) {
    EXPECT_STREQ(FT_Get_Postscript_Name(face_), GetParam());
    // The sum of all words of a TrueType file is a constant, by the adjustment in its header.
    const std::string bytes = readBytes(path_);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        sum += std::uint32_t(std::uint8_t(bytes[i])) << (24 - 8 * (i % 4));
    EXPECT_EQ(sum, 0xb1b0afbau);
}

TEST_P(Fonts, HaveEveryPrintableCharacterOnceAndItsOwn) {
    std::set<FT_UInt> seen;
    for (FT_ULong c = 32; c < 127; ++c) {
        const FT_UInt index = FT_Get_Char_Index(face_, c);
        EXPECT_NE(index, 0u) << char(c);
        EXPECT_TRUE(seen.insert(index).second) << char(c);
    }
    for (const FT_ULong c : {0xb0, 0xb7, 0xd7, 0x2013, 0x2026})
        EXPECT_NE(FT_Get_Char_Index(face_, c), 0u) << c;
    EXPECT_EQ(FT_Get_Char_Index(face_, 0x4e00), 0u);
}

TEST_P(Fonts, GlyphsStandInTheirAdvancesAndLines) {
    for (FT_ULong c = 33; c < 127; ++c) {
        SCOPED_TRACE(char(c));
        const FT_GlyphSlot slot = glyph(c);
        FT_BBox box;
        ASSERT_EQ(FT_Outline_Get_BBox(&slot->outline, &box), 0);
        EXPECT_GE(slot->advance.x, 150);
        EXPECT_LE(slot->advance.x, 1000);
        // So that two neighbours never touch: no more than a hair outside of the own advance.
        EXPECT_GE(box.xMin, 0);
        EXPECT_LE(box.xMax, slot->advance.x);
        EXPECT_GE(box.yMin, face_->descender);
        EXPECT_LE(box.yMax, face_->ascender);
    }
    for (FT_ULong c = '0'; c <= '9'; ++c) EXPECT_EQ(glyph(c)->advance.x, glyph('0')->advance.x) << char(c);
}

TEST_P(Fonts, OutlinesAreClosedRoundInTheRightSense) {
    // Loops: holes of the letter count.
    for (const auto& [character, count] : {std::pair{'H', 1}, {'O', 2}, {'B', 3}, {'i', 2}, {'%', 5}})
        EXPECT_EQ(glyph(FT_ULong(character))->outline.n_contours, count) << character;
    for (FT_ULong c = 33; c < 127; ++c) {
        EXPECT_EQ(FT_Outline_Get_Orientation(&glyph(c)->outline), FT_ORIENTATION_TRUETYPE) << char(c);
        EXPECT_GT(area(c), 4000) << char(c);
    }
}

INSTANTIATE_TEST_SUITE_P(Bundle, Fonts, testing::Values("QVSans-Regular", "Aldrich-Regular"),
                         [](const auto& each) {
                             return std::string(each.param, std::string(each.param).find('-'));
                         });

class SansFont : public Fonts {};

TEST_P(SansFont, StrokesHaveTheirWidth) {
    // A stem and three bars, by hand: 82 × 700, and 334, 304 and 344 of bar beyond the stem.
    EXPECT_NEAR(area('E'), 82 * 700 + 82 * (334 + 304 + 344), 300);
    EXPECT_NEAR(area('I'), 82 * 700, 60);
    const double disc = 3.14159265 * 55 * 55;
    EXPECT_NEAR(area('.'), disc, 0.01 * disc);
    EXPECT_NEAR(area('-'), 82 * 240, 60);
}

TEST_P(SansFont, LettersAreOfOneHeight) {
    for (const auto& [letters, height, overshoot] :
         {std::tuple{"EFHIKLMNTVWXYZ", 700, 0}, {"acemnorsuvwxz", 500, 11}}) {
        for (const char c : std::string(letters)) {
            FT_BBox box;
            FT_Outline_Get_BBox(&glyph(FT_ULong(c))->outline, &box);
            EXPECT_NEAR(double(box.yMin), 0, overshoot) << c;
            EXPECT_NEAR(double(box.yMax), height, overshoot) << c;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Bundle, SansFont, testing::Values("QVSans-Regular"));

TEST(AssetPrograms, DrawTheSameBytesAgain) {
    TemporaryFolder folder;
    for (const char* program : {"Fonts", "Lookups"})
        ASSERT_EQ(std::system(
                      (std::string(QV_ASSET_PROGRAMS "/draw_") + program + " '" + folder / "" + "'").c_str()),
                  0);
    for (const char* name : {"QVSans-Regular.ttf", "Aldrich-Regular.ttf", "lookup_identity.png",
                             "lookup_golden.png", "lookup_silver.png"}) {
        EXPECT_FALSE(readBytes(folder / name).empty()) << name;
        EXPECT_TRUE(readBytes(folder / name) == readBytes(std::string(QV_ASSET_BUNDLE "/") + name)) << name;
    }
}

}  // namespace
}  // namespace qv
