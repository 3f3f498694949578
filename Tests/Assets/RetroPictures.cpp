// The drawn wear, lights and marks: they end within their pictures, so that no straight edge shows, and the
// print's border repeats without a seam.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include "Platform/Media/ImageFile.h"

namespace qv {
namespace {

Bitmap asset(const std::string& name) {
    std::string error;
    Bitmap bitmap = readImageFile(QV_ASSET_BUNDLE "/" + name + ".png", &error);
    if (!bitmap) ADD_FAILURE() << name << ": " << error;
    return bitmap;
}

/// The strongest component of a pixel; alpha only for what is transparent.
int strengthAt(const Bitmap& bitmap, int x, int y, bool onBlack) {
    const std::uint8_t* pixel = bitmap.row(y) + x * 4;
    return onBlack ? std::max({pixel[0], pixel[1], pixel[2]}) : pixel[3];
}

TEST(RetroPictures, EndWithinTheirPicturesAndDiffer) {
    const struct {
        const char* name;
        int count;
        bool onBlack = false;
    } sets[] = {{"whitePoint-", 6},       {"whitePoint-a", 6},
                {"retroPointA", 6},       {"retroVariegated-", 5},
                {"retroScratches-", 5},   {"retroRedLine", 0},
                {"retroBlueLine", 0},     {"retroLight2", 0, true},
                {"camera_film_sun", 0},   {"camera_film_yellowCenter", 0},
                {"camera_rec_conner1", 0}};
    for (const auto& set : sets) {
        std::set<std::size_t> pictures;  // by their hashes
        for (int i = 0; i < std::max(set.count, 1); ++i) {
            const std::string name = set.name + (set.count > 0 ? std::to_string(i) : "");
            const Bitmap picture = asset(name);
            ASSERT_TRUE(picture);
            int border = 0, most = 0;
            for (int y = 0; y < picture.height; ++y)
                for (int x = 0; x < picture.width; ++x) {
                    const int strength = strengthAt(picture, x, y, set.onBlack);
                    const bool atBorder =
                        x == 0 || y == 0 || x == picture.width - 1 || y == picture.height - 1;
                    most = std::max(most, strength);
                    if (atBorder) border = std::max(border, strength);
                }
            EXPECT_LE(border, 4) << name;
            EXPECT_GE(most, 90) << name;
            pictures.insert(std::hash<std::string_view>()(
                {reinterpret_cast<const char*>(picture.pixels->data()), picture.pixels->size()}));
        }
        EXPECT_EQ(pictures.size(), std::size_t(std::max(set.count, 1))) << set.name;
    }
}

TEST(RetroPictures, ThePrintsBorderRepeatsWithoutASeam) {
    const Bitmap frame = asset("retroFrame");
    ASSERT_TRUE(frame);
    int worst = 0;
    for (int depth = 0; depth < 60; ++depth)
        for (int c = 0; c < 4; ++c) {
            for (const int y : {depth, frame.height - 1 - depth})
                worst = std::max(worst, std::abs(frame.row(y)[200 * 4 + c] - frame.row(y)[400 * 4 + c]));
            for (const int x : {depth, frame.width - 1 - depth})
                worst = std::max(worst, std::abs(frame.row(200)[x * 4 + c] - frame.row(400)[x * 4 + c]));
        }
    EXPECT_LE(worst, 2);
    EXPECT_EQ(strengthAt(frame, 300, 300, false), 0) << "clear in the middle";
}

}  // namespace
}  // namespace qv
