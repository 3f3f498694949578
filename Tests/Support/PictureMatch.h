#pragma once

#include <cmath>
#include <filesystem>
#include <string>

#include "Platform/Media/ImageFile.h"
#include "Tests/Support/Picture.h"

#include <gtest/gtest.h>

namespace qv::test {

/// What two pictures of one size differ by.
struct PictureDifference {
    double worst = 0;         ///< of any component; infinite where one is not a number
    double rms = 0;           ///< over all components
    int x = 0, y = 0, c = 0;  ///< where it is worst
};

inline PictureDifference differenceOf(const Picture& a, const Picture& b) {
    PictureDifference found;
    double squares = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        const double difference = std::abs(double(a.values[i]) - double(b.values[i]));
        squares += difference * difference;
        if (difference <= found.worst) continue;
        const int pixel = int(i / 4);
        found = {std::isnan(difference) ? INFINITY : difference, 0, pixel % a.width, pixel / a.width,
                 int(i % 4)};
    }
    found.rms = std::sqrt(squares / double(std::max<std::size_t>(a.values.size(), 1)));
    return found;
}

/// Writes the picture, the expected one and eight times their difference side by side into the build's folder
/// test-output, named after the running test; the path.
inline std::string writeDifference(const Picture& actual, const Picture& expected) {
    const auto code = [](float value) { return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 1.0f; };
    const Bitmap panels = makeBitmap(actual.width * 3, actual.height, [&](int x, int y) {
        const Pixel a = actual.at(x % actual.width, y), b = expected.at(x % actual.width, y);
        Pixel shown{0, 0, 0, 1};
        for (std::size_t c = 0; c < 3; ++c)
            shown[c] = code(x < actual.width       ? a[c]
                            : x < 2 * actual.width ? b[c]
                                                   : 8 * std::abs(a[c] - b[c]));
        return shown;
    });
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = test ? std::string(test->test_suite_name()) + "." + test->name() : "no-test";
    std::replace(name.begin(), name.end(), '/', '-');
    static int number = 0;
    std::filesystem::create_directories(QV_TEST_OUTPUT);
    const std::string path = QV_TEST_OUTPUT "/" + name + "-" + std::to_string(++number) + ".png";
    std::string error;
    return writePNG(panels, path, &error) ? path : error;
}

/// Success when no component differs by more than `tolerance`. A failure tells the worst pixel, the root mean
/// square and where the difference picture lies.
inline testing::AssertionResult matches(const Picture& actual, const Picture& expected, double tolerance) {
    if (actual.width != expected.width || actual.height != expected.height)
        return testing::AssertionFailure() << actual.width << "x" << actual.height << " instead of "
                                           << expected.width << "x" << expected.height;
    const PictureDifference found = differenceOf(actual, expected);
    if (found.worst <= tolerance) return testing::AssertionSuccess();
    const std::size_t c = std::size_t(found.c);
    return testing::AssertionFailure()
           << "off by " << found.worst << " (" << found.worst * 255 << " of 255) at " << found.x << ","
           << found.y << " in "
           << "rgba"[c] << ": " << actual.at(found.x, found.y)[c] << " instead of "
           << expected.at(found.x, found.y)[c] << "; root mean square " << found.rms << "; tolerance "
           << tolerance << "; see " << writeDifference(actual, expected);
}

/// The same against `expected(x, y)`.
template <typename Expected>
testing::AssertionResult matchesPixels(const Picture& actual, double tolerance, Expected&& expected) {
    Picture wanted{actual.width, actual.height, {}};
    for (int y = 0; y < actual.height; ++y)
        for (int x = 0; x < actual.width; ++x)
            for (const float value : expected(x, y)) wanted.values.push_back(value);
    return matches(actual, wanted, tolerance);
}

}  // namespace qv::test
