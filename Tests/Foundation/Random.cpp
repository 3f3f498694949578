#include "Platform/Foundation/Random.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace qv {
namespace {

// The C library's own generator is the reference.
TEST(SeededRandom, DrawsTheNumbersOfTheCLibrary) {
    std::vector<std::uint32_t> seeds{0,          1,          2,          127773,    0x7fffffff,
                                     0x80000000, 0x80000001, 0xfffffffe, 0xffffffff};
    for (std::uint32_t i = 0; i < 20000; ++i) seeds.push_back(i * 2654435761u + 12345u);
    for (auto seed : seeds) {
        srandom(seed);
        SeededRandom generator(seed);
        EXPECT_EQ(randomFromSeed(seed), generator.next()) << seed;
        auto first = random();
        ASSERT_EQ(randomFromSeed(seed), first) << seed;
        for (int draw = 0; draw < 40; ++draw)
            ASSERT_EQ(generator.next(), random()) << seed << " draw " << draw;
    }
}

}  // namespace
}  // namespace qv
