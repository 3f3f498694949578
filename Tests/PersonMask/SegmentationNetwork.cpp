// The reader of model files, against a plain computation of the same network, and against bytes that are
// none.

#include "QVPersonMask/Private/SegmentationNetwork.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "QVPersonMask/Private/FlatTable.h"
#include "Tests/Support/TinyNetwork.h"

namespace qv {
namespace {

using test::FlatNode;
using test::TinyNetwork;

/// Channels last, as in the file.
struct Volume {
    int height, width, channels;
    std::vector<float> values = std::vector<float>(std::size_t(height * width * channels));

    float& at(int y, int x, int c) { return values[std::size_t((y * width + x) * channels + c)]; }
    float get(int y, int x, int c) const {
        const bool inside = y >= 0 && y < height && x >= 0 && x < width;
        return inside ? values[std::size_t((y * width + x) * channels + c)] : 0;
    }
    template <typename Function>
    static Volume make(int height, int width, int channels, Function&& value) {
        Volume volume{height, width, channels};
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                for (int c = 0; c < channels; ++c) volume.at(y, x, c) = value(y, x, c);
        return volume;
    }
    template <typename Function>
    Volume map(Function&& function) const {
        return make(height, width, channels, [&](int y, int x, int c) { return function(get(y, x, c)); });
    }
};

/// Multiples of 1/16, which both kinds of weights hold.
std::vector<float> someWeights(std::size_t count) {
    static std::minstd_rand random(5);
    std::vector<float> values(count);
    for (float& value : values) value = float(int(random() % 33) - 16) / 16;
    return values;
}

float sigmoid(float x) {
    return 1 / (1 + std::exp(-x));
}

/// The part of a bilinear sample's place that lies beyond the pixel `lower`, for pixels with their centres at
/// ½.
float tent(int target, int from, int to, int pixel) {
    const float place =
        std::clamp((float(target) + 0.5f) * float(from) / float(to) - 0.5f, 0.0f, float(from - 1));
    return std::max(0.0f, 1 - std::fabs(place - float(pixel)));
}

TEST(SegmentationNetwork, ComputesEveryOperator) {
    // 6×8×3 → halved → halved again in single channels → weighed by its own mean → enlarged, added → doubled.
    const auto w1 = someWeights(4 * 9 * 3), b1 = someWeights(4), w2 = someWeights(9 * 4), b2 = someWeights(4),
               w3 = someWeights(16), b3 = someWeights(4), w4 = someWeights(16), b4 = someWeights(1);
    TinyNetwork network(6, 8);
    const FlatNode one = FlatNode::number(1), two = FlatNode::number(2), same = FlatNode::nothing();
    const int first =
        network.operation(TinyNetwork::hardSwish,
                          {network.operation(TinyNetwork::convolution,
                                             {0, network.halves({4, 3, 3, 3}, w1), network.halves({4}, b1)},
                                             {1, 3, 4, 4}, {same, two, two})},
                          {1, 3, 4, 4});
    const int second = network.operation(
        TinyNetwork::relu,
        {network.operation(TinyNetwork::depthwise,
                           {first, network.constant({1, 3, 3, 4}, w2), network.constant({4}, b2)},
                           {1, 2, 2, 4}, {same, two, two, one})},
        {1, 2, 2, 4});
    const int mean =
        network.operation(TinyNetwork::averagePool, {second}, {1, 1, 1, 4}, {one, two, two, two, two});
    const int weight = network.operation(
        TinyNetwork::sigmoid,
        {network.operation(TinyNetwork::convolution,
                           {mean, network.halves({4, 1, 1, 4}, w3), network.halves({4}, b3)}, {1, 1, 1, 4},
                           {one, one, one})},
        {1, 1, 1, 4});
    const int weighed = network.operation(TinyNetwork::multiply, {second, weight}, {1, 2, 2, 4});
    const int large = network.operation(TinyNetwork::resize, {weighed, network.constant({2}, {0, 0})},
                                        {1, 3, 4, 4}, {same, same, same, one});
    const int sum = network.operation(TinyNetwork::add, {first, large}, {1, 3, 4, 4});
    const int level = network.operation(
        TinyNetwork::custom, {sum, network.halves({1, 2, 2, 4}, w4), network.halves({1}, b4)}, {1, 6, 8, 1});
    const std::string file = network.file(network.operation(TinyNetwork::sigmoid, {level}, {1, 6, 8, 1}));

    std::vector<std::uint8_t> rgb(6 * 8 * 3);
    std::minstd_rand random(9);
    for (auto& value : rgb) value = std::uint8_t(random());
    SegmentationNetwork read({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()});
    ASSERT_EQ(read.width(), 8);
    ASSERT_EQ(read.height(), 6);
    const std::vector<float> result = read.run(rgb);

    const auto input = Volume::make(
        6, 8, 3, [&](int y, int x, int c) { return float(rgb[std::size_t((y * 8 + x) * 3 + c)]) / 255; });
    // Of a halved even side the missing row and column are the last ones.
    const auto a = Volume::make(3, 4, 4, [&](int y, int x, int c) {
                       float total = b1[std::size_t(c)];
                       for (int dy = 0; dy < 3; ++dy)
                           for (int dx = 0; dx < 3; ++dx)
                               for (int i = 0; i < 3; ++i)
                                   total += input.get(2 * y + dy, 2 * x + dx, i) *
                                            w1[std::size_t(((c * 3 + dy) * 3 + dx) * 3 + i)];
                       return total;
                   }).map([](float v) { return v * std::clamp(v + 3, 0.0f, 6.0f) / 6; });
    // Of three rows one is missing on both sides, of four columns one after the last.
    const auto b =
        Volume::make(2, 2, 4, [&](int y, int x, int c) {
            float total = b2[std::size_t(c)];
            for (int dy = 0; dy < 3; ++dy)
                for (int dx = 0; dx < 3; ++dx)
                    total += a.get(2 * y + dy - 1, 2 * x + dx, c) * w2[std::size_t((dy * 3 + dx) * 4 + c)];
            return total;
        }).map([](float v) { return std::max(v, 0.0f); });
    const auto c = Volume::make(1, 1, 4, [&](int, int, int out) {
        float total = b3[std::size_t(out)];
        for (int i = 0; i < 4; ++i)
            total += (b.get(0, 0, i) + b.get(0, 1, i) + b.get(1, 0, i) + b.get(1, 1, i)) / 4 *
                     w3[std::size_t(out * 4 + i)];
        return sigmoid(total);
    });
    const auto d = Volume::make(3, 4, 4, [&](int y, int x, int channel) {
        float total = a.get(y, x, channel);
        for (int j = 0; j < 2; ++j)
            for (int i = 0; i < 2; ++i)
                total += b.get(j, i, channel) * c.get(0, 0, channel) * tent(y, 2, 3, j) * tent(x, 2, 4, i);
        return total;
    });
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 8; ++x) {
            float total = b4[0];
            for (int i = 0; i < 4; ++i)
                total += d.get(y / 2, x / 2, i) * w4[std::size_t(((y % 2) * 2 + x % 2) * 4 + i)];
            EXPECT_NEAR(result[std::size_t(y * 8 + x)], sigmoid(total), 1e-5) << x << ' ' << y;
        }
    }
}

std::string causeFor(const std::string& file) {
    try {
        SegmentationNetwork({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()});
        return "";
    } catch (const ModelError& error) {
        return error.what();
    }
}

TEST(SegmentationNetwork, RefusesWhatIsDamaged) {
    const std::string whole = test::redNetwork(4, 4, 4);
    ASSERT_EQ(causeFor(whole), "");
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_NE(causeFor(whole.substr(0, size)), "") << size;
    // Any bytes may be read; what comes of them is a network or one cause.
    std::minstd_rand random(3);
    for (int round = 0; round < 4000; ++round) {
        std::string file = whole;
        for (int i = 0; i <= round % 3; ++i)
            file[random() % file.size()] = char(random() % 4 ? random() : random() % 2 * 255);
        causeFor(file);
    }
}

TEST(SegmentationNetwork, RefusesOtherNetworks) {
    const FlatNode one = FlatNode::number(1), none = FlatNode::nothing();
    const auto convolution = [&](const TinyNetwork::Shape& weights, const TinyNetwork::Shape& result,
                                 const std::vector<FlatNode>& options) {
        TinyNetwork network(4, 4);
        std::size_t count = 1;
        for (int side : weights) count *= std::size_t(side);
        const int made =
            network.operation(TinyNetwork::convolution,
                              {0, network.constant(weights, std::vector<float>(count)),
                               network.constant({weights[0]}, std::vector<float>(std::size_t(weights[0])))},
                              result, options);
        return causeFor(network.file(made));
    };
    EXPECT_EQ(convolution({1, 1, 1, 3}, {1, 4, 4, 1}, {none, one, one}), "");
    EXPECT_THAT(convolution({2, 1, 1, 3}, {1, 4, 4, 2}, {none, one, one}),
                testing::HasSubstr("output is not a mask"));
    EXPECT_THAT(convolution({1, 1, 1, 4}, {1, 4, 4, 1}, {none, one, one}),
                testing::HasSubstr("another shape"));
    EXPECT_THAT(convolution({1, 3, 3, 3}, {1, 4, 4, 1}, {one, one, one}),
                testing::HasSubstr("tensor's shape"));
    EXPECT_THAT(convolution({1, 1, 1, 3}, {1, 4, 4, 1}, {none, one, one, one}),
                testing::HasSubstr("activation"));
    EXPECT_THAT(convolution({1, 1, 1, 3}, {1, 4, 4, 1}, {none, none, none}),
                testing::HasSubstr("another shape"));
    TinyNetwork unknown(4, 4);
    EXPECT_THAT(causeFor(unknown.file(unknown.operation(TinyNetwork::Code(77), {0}, {1, 4, 4, 1}))),
                testing::HasSubstr("operator number 77"));
    TinyNetwork huge(4, 4);
    EXPECT_THAT(causeFor(huge.file(huge.operation(TinyNetwork::resize, {0, 0}, {1, 30000, 30000, 3},
                                                  {none, none, none, one}))),
                testing::HasSubstr("too large"));
}

}  // namespace
}  // namespace qv
