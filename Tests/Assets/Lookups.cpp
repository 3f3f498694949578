#include <gtest/gtest.h>

#include <cmath>

#include "Platform/Media/ImageFile.h"

namespace qv {
namespace {

class Lookups : public testing::Test {
  protected:
    static Bitmap table(const std::string& name) {
        std::string error;
        const Bitmap bitmap = readImageFile(QV_ASSET_BUNDLE "/lookup_" + name + ".png", &error);
        EXPECT_TRUE(bitmap) << error;
        EXPECT_EQ(bitmap.width, 512);
        EXPECT_EQ(bitmap.height, 512);
        return bitmap;
    }
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
    for (int b = 0; b < 64; ++b)
        for (int g = 0; g < 64; ++g)
            for (int r = 0; r < 64; ++r) {
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
    for (int b = 0; b < 64; b += 7)
        for (int g = 0; g < 64; g += 7)
            for (int r = 0; r < 64; r += 7) {
                const Color c = at(silver, r, g, b);
                EXPECT_LE(c.r, c.g);
                EXPECT_LE(c.g, c.b);
                EXPECT_LE(c.b - c.r, 12);
            }
    EXPECT_GT(at(silver, 32, 32, 32).b, at(silver, 32, 32, 32).r);
}

}  // namespace
}  // namespace qv
