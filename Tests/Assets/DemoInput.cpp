#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "Platform/Media/ImageFile.h"

#ifdef QV_DEMO_INPUT

namespace qv {
namespace {

constexpr int kWidth = 1280, kHeight = 720;

std::string input(const std::string& name) {
    return std::string(QV_DEMO_INPUT "/") + name;
}

/// Brightness 0..255 of one frame of a clip, as the command-line tool decodes it.
std::vector<double> grayFrame(const std::string& name, int frame) {
    const std::string command = "ffmpeg -nostdin -v error -i '" + input(name) + "' -vf 'select=eq(n\\," +
                                std::to_string(frame) +
                                "),format=rgb24,format=gray' -frames:v 1 -f rawvideo -";
    std::vector<double> gray;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    for (int byte; (byte = std::fgetc(pipe)) != EOF;) gray.push_back(byte);
    ::pclose(pipe);
    gray.resize(std::size_t(kWidth) * kHeight);
    return gray;
}

double at(const std::vector<double>& gray, int x, int y) {
    return gray[std::size_t(y) * kWidth + std::size_t(x)];
}

TEST(DemoInput, MaskLiesOnTheFigure) {
    for (const int frame : {0, 25, 50, 75}) {
        SCOPED_TRACE(frame);
        const std::vector<double> picture = grayFrame("demo_b.mp4", frame),
                                  mask = grayFrame("demo_b_mask.mp4", frame);
        // The outline of the mask runs along edges of the picture; moved by a few pixels it does not.
        const auto edge = [&](int x, int y) {
            return std::hypot(at(picture, x + 1, y) - at(picture, x - 1, y),
                              at(picture, x, y + 1) - at(picture, x, y - 1));
        };
        const auto score = [&](int dx, int dy) {
            double sum = 0;
            for (int y = 12; y < kHeight - 12; ++y)
                for (int x = 12; x < kWidth - 12; ++x)
                    if ((at(mask, x, y) > 128) != (at(mask, x + 1, y) > 128)) sum += edge(x + dx, y + dy);
            return sum;
        };
        const double aligned = score(0, 0);
        EXPECT_GT(aligned, 0);
        for (const auto& [dx, dy] : {std::pair{-4, 0}, {4, 0}, {-8, 0}, {8, 0}})
            EXPECT_GT(aligned, 1.15 * score(dx, dy)) << dx;

        // The still picture is the same frame.
        char name[32];
        std::snprintf(name, sizeof name, "demo_b_mask_%03d.png", frame);
        const Bitmap still = readImageFile(input(name));
        ASSERT_TRUE(still);
        double difference = 0;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) difference += std::abs(still.row(y)[4 * x] - at(mask, x, y));
        EXPECT_LT(difference / (kWidth * kHeight), 1.5);
    }
}

}  // namespace
}  // namespace qv

#endif
