#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <iostream>
#include <limits>
#include <string>

#include "Platform/Media/ImageFile.h"

/// What the programs of the comparison share, so that they take their times in the same way.
namespace qv::comparison {

/// The chain of eight filters: three times a saturation and a factor of 2^stops, twice a mix with the second
/// picture behind it.
struct ChainStep {
    float saturation, stops;
    float mix;  ///< share of the second picture; 0: no mix
};
inline constexpr std::array<ChainStep, 3> kChain = {
    {{0.7f, 0.25f, 0.3f}, {1.3f, -0.25f, 0.2f}, {0.8f, 0.1f, 0}}};
inline constexpr float kSaturation = 0.3f;
/// Standard deviation of the blur, pixels.
inline constexpr float kBlurSigma = 20;

/// The command line: two pictures of one size, and perhaps a folder for what is drawn.
struct Pictures {
    Bitmap first, second;
    std::string folder;  ///< empty: the results are not kept
};

/// False with a line on standard error.
inline bool readPictures(int argc, char** argv, Pictures& pictures) {
    if (argc < 3 || argc > 4) {
        std::cerr << "usage: " << argv[0] << " FIRST.png SECOND.png [FOLDER]\n";
        return false;
    }
    std::string error;
    pictures.first = readImageFile(argv[1], &error);
    if (pictures.first) pictures.second = readImageFile(argv[2], &error);
    if (!pictures.second) {
        std::cerr << error << '\n';
        return false;
    }
    if (pictures.first.width != pictures.second.width || pictures.first.height != pictures.second.height) {
        std::cerr << "the pictures are not of one size\n";
        return false;
    }
    if (argc == 4) pictures.folder = argv[3];
    return true;
}

/// Prints the job's name, a tab and milliseconds a frame: the best mean of three rounds of frames, each of
/// which is finished before the next one starts.
inline void report(const std::string& job, const std::function<void()>& drawFrame) {
    constexpr int kWarmUpFrames = 3, kRounds = 3, kFrames = 12;
    for (int i = 0; i < kWarmUpFrames; ++i) drawFrame();
    double best = std::numeric_limits<double>::infinity();
    for (int round = 0; round < kRounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < kFrames; ++i) drawFrame();
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count() / kFrames);
    }
    std::cout << job << '\t' << best << std::endl;
}

}  // namespace qv::comparison
