#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "Platform/Media/ClipWriter.h"
#include "QVFilterExtension/Utils/QVEffectVideoFrameCacheManager.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv::test {

/// A folder of its own for temporary files while it lives.
class TemporaryFileFolder : public TemporaryFolder {
  public:
    TemporaryFileFolder() { use(*this / ""); }
    ~TemporaryFileFolder() {
        QVEffectVideoFrameCacheManager::sharedManager().finishWriting();
        former_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", former_.c_str(), 1);
    }
    /// Takes another folder, which need not be one.
    static void use(const std::string& path) {
        QVEffectVideoFrameCacheManager::sharedManager().finishWriting();
        setenv("TMPDIR", path.c_str(), 1);
    }

  private:
    std::string former_ = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "";
};

/// Writes a clip of one luma value a frame, 64x36.
inline void writeGreyClip(const std::string& path, int frames, Rational frameTime,
                          const std::function<int(int)>& lumaOf) {
    const Rational rate{frameTime.denominator, frameTime.numerator};
    const ClipVideoFormat video{
        .width = 64, .height = 36, .timeBase = frameTime, .averageFrameRate = rate, .realFrameRate = rate};
    std::string error;
    const auto writer = ClipWriter::create(path, video, {.crf = 4}, nullptr, &error);
    ASSERT_TRUE(writer) << error;
    for (int i = 0; i < frames; ++i) {
        const PixelBuffer frame = writer->makeFrame();
        const int samples[] = {lumaOf(i), 128, 128};
        for (int p = 0; p < 3; ++p)
            std::memset(frame.plane(p).data, samples[p], frame.plane(p).rowBytes * (p == 0 ? 36 : 18));
        ASSERT_TRUE(writer->write(ClipFrame{frame, i, 1})) << writer->error();
    }
    ASSERT_TRUE(writer->finish()) << writer->error();
}

}  // namespace qv::test
