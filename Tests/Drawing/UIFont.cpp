#include "Platform/Drawing/UIFont.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "Platform/Drawing/BitmapCanvas.h"
#include "Tests/Drawing/TestFont.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

using testing::HasSubstr;

class UIFontTest : public testing::Test {
  protected:
    /// The test font under a name that no other test uses.
    UIFont font(const std::string& name, double size) {
        writeBytes(folder / name, testFont(name));
        std::string error;
        EXPECT_TRUE(UIFont::registerFontFile(folder / name, &error)) << error;
        return UIFont::fontWithName(name, size);
    }

    TemporaryFolder folder;
};

TEST_F(UIFontTest, MeasuresLinesInPoints) {
    EXPECT_FALSE(UIFont::fontWithName("Measured", 20));
    auto measured = font("Measured", 20);
    ASSERT_TRUE(measured);
    EXPECT_EQ(measured.fontName(), "Measured");
    EXPECT_DOUBLE_EQ(measured.ascender(), 16);
    EXPECT_DOUBLE_EQ(measured.descender(), -4);
    EXPECT_DOUBLE_EQ(measured.lineHeight(), 20);
    auto width = [&](const std::string& text) { return measured.sizeOfText(text).width / 20; };
    EXPECT_DOUBLE_EQ(width(""), 0);
    EXPECT_NEAR(width("A A"), 0.7 + 0.25 + 0.7, 1e-12);
    EXPECT_NEAR(width("AV"), 0.7 - 0.1 + 0.6, 1e-12);
    EXPECT_NEAR(width("VA"), 0.6 + 0.7, 1e-12);
    EXPECT_NEAR(width("A\tA\n"), 2 * 0.7 + 2 * 0.25, 1e-12);
    EXPECT_NEAR(width("é€😀"), 3 * 0.4, 1e-12);
    // A stray trail byte, a cut sequence of two bytes, an overlong slash, half a surrogate pair: each byte
    // counts.
    for (auto [broken, glyphs] :
         {std::pair("\x80", 1), {"\xe2\x82", 2}, {"\xc0\xaf", 2}, {"\xed\xa0\x80", 3}, {"\xff", 1}})
        EXPECT_NEAR(width(broken), glyphs * 0.4, 1e-12) << testing::PrintToString(broken);
    EXPECT_EQ(UIFont::fontWithName("Measured", -3).sizeOfText("A"), (CGSize{0, 0}));
    EXPECT_EQ(UIFont().sizeOfText("A"), (CGSize{0, 0}));
}

TEST_F(UIFontTest, DrawsItsOutlinesUnderTheLineBox) {
    auto drawn = font("Drawn", 100);
    // The second square begins 0.7 − 0.1 + 0.1 em after the line's start, on the baseline 80 below the top.
    auto bounds = BitmapCanvas::pathForText("AV", {20, 5}, drawn).controlPointBounds();
    EXPECT_NEAR(bounds.minX(), 30, 1e-9);
    EXPECT_NEAR(bounds.maxX(), 20 + 60 + 60, 1e-9);
    EXPECT_NEAR(bounds.minY(), 35, 1e-9);
    EXPECT_NEAR(bounds.maxY(), 85, 1e-9);
    BitmapCanvas canvas({100, 100});
    canvas.drawText("A", {20, 5}, drawn, UIColor(1, 0, 0));
    auto bitmap = canvas.image().bitmap();
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x) {
            bool inside = x >= 30 && x < 80 && y >= 35 && y < 85;
            ASSERT_EQ(bitmap.row(y)[x * 4], inside ? 255 : 0) << x << ", " << y;
            ASSERT_EQ(bitmap.row(y)[x * 4 + 2], 0);
        }
}

TEST_F(UIFontTest, RegistrationFailsWithItsCause) {
    auto failure = [](const std::string& path) {
        std::string error;
        EXPECT_FALSE(UIFont::registerFontFile(path, &error)) << path;
        return error;
    };
    font("Once", 10);
    EXPECT_THAT(failure(folder / "Once"), HasSubstr("already registered"));
    writeBytes(folder / "copy", testFont("Once"));
    EXPECT_THAT(failure(folder / "copy"), HasSubstr("Once"));
    EXPECT_THAT(failure(folder / "missing"), HasSubstr("No such file"));
    EXPECT_FALSE(failure(folder / "").empty());  // a directory
    for (const std::string& bytes : {std::string(), std::string("no font"), testFont("Cut").substr(0, 300)}) {
        writeBytes(folder / "broken", bytes);
        EXPECT_THAT(failure(folder / "broken"), HasSubstr("not a readable font"));
    }
    EXPECT_FALSE(UIFont::fontWithName("Cut", 10));
    EXPECT_FALSE(UIFont::registerFontFile(folder / "missing", nullptr));
}

TEST_F(UIFontTest, OutlivesItsFileAndServesManyThreads) {
    auto shared = font("Shared", 10);
    writeBytes(folder / "Shared", "");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                EXPECT_NEAR(shared.sizeOfText("A V").width, 15.5, 1e-9);
                EXPECT_NEAR(BitmapCanvas::pathForText("VV", {}, shared).controlPointBounds().maxX(), 12,
                            1e-9);
            }
        });
    for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace qv
