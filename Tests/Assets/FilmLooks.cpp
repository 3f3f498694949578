// What the film looks lay over the picture: light that differs, tables that answer as film does, borders that
// can be repeated.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "Platform/Media/ImageFile.h"

namespace qv {
namespace {

Bitmap asset(const std::string& name) {
    std::string error;
    Bitmap bitmap = readImageFile(std::string(QV_ASSET_BUNDLE "/") + name, &error);
    if (!bitmap) ADD_FAILURE() << name << ": " << error;
    return bitmap;
}

TEST(FilmLeaks, AreAllOfAnotherCharacter) {
    constexpr int kColumns = 16, kRows = 9;
    std::vector<std::vector<double>> looks;
    for (int i = 0; i < 27; ++i) {
        const bool isRed = i < 23;
        const Bitmap leak = asset(isRed ? "light_film_leak_r_" + std::to_string(i) + ".jpg"
                                        : "light_film_leak_b_" + std::to_string(i - 23) + ".jpg");
        ASSERT_TRUE(leak);
        std::vector<double> look(kColumns * kRows * 3);
        double red = 0, blue = 0;
        const double perCell = 1.0 * leak.width * leak.height / (kColumns * kRows);
        for (int y = 0; y < leak.height; ++y)
            for (int x = 0; x < leak.width; ++x)
                for (int c = 0; c < 3; ++c)
                    look[std::size_t((y * kRows / leak.height * kColumns + x * kColumns / leak.width) * 3 +
                                     c)] += leak.row(y)[x * 4 + c] / perCell;
        for (std::size_t k = 0; k < look.size(); k += 3) red += look[k], blue += look[k + 2];
        EXPECT_GT(isRed ? red : blue, 1.5 * (isRed ? blue : red)) << i;
        EXPECT_GT(std::max(red, blue), 144 * 4.0) << i << " hardly shows";
        EXPECT_LT(blue + red, 144 * 330.0) << i << " hides the picture";
        looks.push_back(std::move(look));
    }
    for (std::size_t i = 0; i < looks.size(); ++i)
        for (std::size_t k = 0; k < i; ++k) {
            double squares = 0;
            for (std::size_t j = 0; j < looks[i].size(); ++j)
                squares += std::pow(looks[i][j] - looks[k][j], 2);
            EXPECT_GT(std::sqrt(squares / double(looks[i].size())), 8) << i << " is like " << k;
        }
}

TEST(FilmTables, AnswerAsFilmDoes) {
    const struct {
        const char* name;
        bool isFilm;
    } tables[] = {{"black_film_dark", true},   {"light_film_light", true},   {"fuji_film_lookup", true},
                  {"noisy_film_lookup", true}, {"damage_film_lookup", true}, {"rec_film_lookup", false},
                  {"vhs_film_lookup", false}};
    for (const auto& [name, isFilm] : tables) {
        SCOPED_TRACE(name);
        const Bitmap table = asset(std::string(name) + ".png");
        ASSERT_TRUE(table);
        const auto grey = [&](int level, int c) {
            return int(table.row(level / 8 * 64 + level)[(level % 8 * 64 + level) * 4 + c]);
        };
        for (int c = 0; c < 3; ++c) {
            for (int level = 1; level < 64; ++level)
                ASSERT_GE(grey(level, c), grey(level - 1, c)) << "a brighter grey comes out darker";
            // Toe and shoulder are flatter than the middle.
            const int middle = grey(34, c) - grey(30, c);
            EXPECT_GT(middle, grey(63, c) - grey(59, c));
            EXPECT_TRUE(!isFilm || middle > grey(4, c) - grey(0, c));
        }
    }
    // Layers that cross over: colder in the shadows than in the lights.
    for (const char* name : {"fuji_film_lookup", "noisy_film_lookup"}) {
        const Bitmap table = asset(std::string(name) + ".png");
        const std::uint8_t* shadow = table.row(64 + 10) + (2 * 64 + 10) * 4;
        const std::uint8_t* light = table.row(7 * 64 + 58) + (2 * 64 + 58) * 4;
        EXPECT_GT(shadow[2], shadow[0] + 3) << name;
        EXPECT_GT(light[0], light[2] + 3) << name;
    }
}

TEST(FilmGates, HaveEdgesThatCanBeRepeated) {
    for (const char* name : {"blackFilm_frame.png", "light_film_frame.png", "damage_film_frame.png"}) {
        SCOPED_TRACE(name);
        const Bitmap gate = asset(name);
        ASSERT_EQ(gate.width, 1080);
        ASSERT_EQ(gate.height, 1080);
        const auto alpha = [&](int x, int y) { return double(gate.row(y)[x * 4 + 3]); };
        EXPECT_EQ(alpha(0, 0), 255);
        EXPECT_LT(alpha(540, 540), 8);
        // How far the border reaches in, by its mean alpha, in the middle third of each side.
        for (int side = 0; side < 4; ++side) {
            double least = 1e9, most = 0;
            for (int start = 362; start < 718; start += 12) {
                double reach = 0;
                for (int along = start; along < start + 12; ++along)
                    for (int in = 0; in < 120; ++in) {
                        const int across = side < 2 ? in : 1079 - in;
                        reach += (side % 2 ? alpha(along, across) : alpha(across, along)) / 255 / 12;
                    }
                least = std::min(least, reach);
                most = std::max(most, reach);
            }
            EXPECT_LT(most - least, 3) << "side " << side;
            EXPECT_GT(least, 15) << "side " << side;
        }
    }
}

}  // namespace
}  // namespace qv
