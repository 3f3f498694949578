#include "QVFilterCore/QVFilmNoisyMTIFilter.h"

#include <algorithm>

#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

MTIImage grey(float level, CGSize size, float alpha = 1) {
    return MTIImage::initWithColor({level, level, level, alpha}, false, size);
}

Picture grainAt(double seconds, const MTIImage& input, float opacity = 1) {
    QVFilmNoisyMTIFilter filter;
    filter.setInputImage(input);
    filter.setITime(seconds);
    filter.setOpacity(opacity);
    return render(filter.outputImage());
}

struct Statistics {
    double mean = 0, deviation = 0;
};

Statistics statisticsOf(const Picture& picture) {
    double sum = 0, squares = 0;
    const double count = double(picture.width) * picture.height;
    for (std::size_t i = 1; i < picture.values.size(); i += 4) {
        sum += picture.values[i];
        squares += double(picture.values[i]) * picture.values[i];
    }
    return {sum / count, std::sqrt(std::max(0.0, squares / count - sum / count * sum / count))};
}

/// Correlation of a picture's green with that of `other`, moved by (dx, dy).
double correlation(const Picture& picture, const Picture& other, int dx, int dy) {
    const Statistics a = statisticsOf(picture), b = statisticsOf(other);
    double sum = 0;
    int count = 0;
    for (int y = 0; y + dy < picture.height; ++y) {
        for (int x = 0; x + dx < picture.width; ++x, ++count)
            sum += (picture.at(x, y)[1] - a.mean) * (other.at(x + dx, y + dy)[1] - b.mean);
    }
    return sum / count / (a.deviation * b.deviation);
}

TEST(QVFilmNoisyMTIFilter, StandsFor24thsOfASecond) {
    const MTIImage input = grey(0.5f, {200, 120});
    const Picture first = grainAt(3.0, input);
    // Passes may be joined meanwhile, which rounds otherwise.
    EXPECT_TRUE(matches(grainAt(3.0, input), first, 1e-4));
    EXPECT_TRUE(matches(grainAt(3.04, input), first, 1e-4)) << "within the same 24th";
    const Picture next = grainAt(3.0 + 1.01 / 24, input);
    EXPECT_LT(std::abs(correlation(first, next, 0, 0)), 0.05);
    for (const double seconds : {-5.0, 1e9, double(NAN)})
        EXPECT_GT(statisticsOf(grainAt(seconds, input)).deviation, 0.1);
}

TEST(QVFilmNoisyMTIFilter, IsClumpedAndCentredWhateverTheFrame) {
    for (const CGSize size : {CGSize{640, 360}, CGSize{1080, 1080}, CGSize{1215, 2160}}) {
        const Picture grain = grainAt(1.5, grey(0.5f, size));
        const Statistics statistics = statisticsOf(grain);
        EXPECT_NEAR(statistics.mean, 0.5, 0.01);
        EXPECT_GT(statistics.deviation, 0.12);
        EXPECT_LT(statistics.deviation, 0.3);
        // Neighbours belong to one grain, pixels far apart do not.
        for (const auto& [dx, dy] : {std::pair{1, 0}, std::pair{0, 1}})
            EXPECT_GT(correlation(grain, grain, dx, dy), 0.25) << size.width;
        for (const auto& [dx, dy] : {std::pair{20, 0}, std::pair{0, 23}, std::pair{24, 18}})
            EXPECT_LT(std::abs(correlation(grain, grain, dx, dy)), 0.03) << size.width;
    }
}

TEST(QVFilmNoisyMTIFilter, CoversWhatTheInputCoversByItsOpacity) {
    EXPECT_FLOAT_EQ(grainAt(0, grey(1, {8, 8}, 0.5f), 0.4f).at(3, 3)[3], 0.4f * 128 / 255);
}

}  // namespace
}  // namespace qv::test
