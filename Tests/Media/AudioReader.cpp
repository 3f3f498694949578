#include "Platform/Media/AudioReader.h"

#include <algorithm>

#include "Tests/Media/SoundTools.h"

namespace qv {
namespace {

class SoundReading : public testing::Test {
  protected:
    TemporaryFolder files_;

    /// Two tones, one a channel.
    std::string clip(const std::string& name, const std::string& options) {
        const std::string path = files_ / name;
        ffmpeg(
            "-f lavfi -i testsrc2=s=64x48:r=25:d=1 -f lavfi -i "
            "\"aevalsrc=0.5*sin(2*PI*440*t)|0.25*sin(2*PI*660*t):s=44100:d=1\" " +
            options + " '" + path + "'");
        return path;
    }

    static std::vector<float> read(const std::string& path, const AudioFormat& format, double origin,
                                   std::int64_t count) {
        std::string error;
        const auto reader = AudioReader::open(path, &error);
        EXPECT_TRUE(reader) << error;
        std::vector<float> samples(std::size_t(count * format.channels), 9.0f);
        if (!reader || !reader->convertTo(format, origin)) return {};
        // In pieces that are no multiple of anything.
        for (std::int64_t done = 0; done < count;) {
            const std::int64_t piece = std::min<std::int64_t>(777, count - done);
            EXPECT_TRUE(reader->read(samples.data() + done * format.channels, piece)) << reader->error();
            done += piece;
        }
        return samples;
    }

    /// The largest difference of the samples that both have, `skipped` of the second's left out.
    static double worst(const std::vector<float>& a, const std::vector<float>& b, std::size_t skipped = 0) {
        double result = 0;
        for (std::size_t i = 0; i < a.size() && i + skipped < b.size(); ++i)
            result = std::max(result, double(std::abs(a[i] - b[i + skipped])));
        return result;
    }
};

const AudioFormat kStereo{44100, 2, "stereo"};

TEST_F(SoundReading, GivesWhatTheFileHoldsAndThenSilence) {
    for (const char* name : {"pcm.mkv", "aac.mp4", "flac.mkv", "opus.webm"}) {
        const std::string codec(name, std::string(name).find('.'));
        const std::string options = codec == "pcm"    ? "-c:a pcm_s16le"
                                    : codec == "opus" ? "-c:a libopus -c:v libvpx"
                                                      : "-c:a " + codec;
        const std::string path = clip(name, options);
        std::string error;
        const auto reader = AudioReader::open(path, &error);
        ASSERT_TRUE(reader) << error;
        const AudioFormat format = reader->format();
        EXPECT_EQ(format.channels, 2);
        EXPECT_EQ(format.channelLayout, "stereo");
        EXPECT_EQ(format.sampleRate, codec == "opus" ? 48000 : 44100);
        EXPECT_EQ(format.lossless, codec == "pcm" || codec == "flac");

        const std::vector<float> decoded = decodedSound(path);
        ASSERT_GE(decoded.size(), std::size_t(2 * format.sampleRate));
        const auto frames = std::int64_t(decoded.size() / 2);
        const std::vector<float> samples = read(path, format, 0, frames + 5000);
        EXPECT_LT(worst(decoded, samples), 1e-4) << name;
        EXPECT_EQ(std::count(samples.end() - 10000 + 4, samples.end(), 0.0f), 10000 - 4) << name;
    }
}

TEST_F(SoundReading, KeepsStepWithTheOrigin) {
    const std::string path = clip("pcm.mkv", "-c:a pcm_s16le");
    const std::vector<float> whole = decodedSound(path);
    const std::vector<float> later = read(path, kStereo, 0.25, 20000);
    EXPECT_LT(worst(later, whole, 2 * 11025), 1e-6);
    const std::vector<float> earlier = read(path, kStereo, -0.25, 30000);
    EXPECT_EQ(std::count(earlier.begin(), earlier.begin() + 2 * 11025, 0.0f), 2 * 11025);
    EXPECT_LT(worst({earlier.begin() + 2 * 11025, earlier.end()}, whole), 1e-6);

    // Sound that begins after the pictures, in a container whose stamps are rounded.
    const std::string late = files_ / "late.mkv";
    ffmpeg("-i '" + path + "' -itsoffset 0.3 -i '" + path + "' -map 0:v -map 1:a -c copy '" + late + "'");
    const std::vector<float> delayed = read(late, kStereo, 0, 40000);
    const std::size_t silent = 2 * 13230;
    EXPECT_EQ(std::count(delayed.begin(), delayed.begin() + std::ptrdiff_t(silent), 0.0f), silent);
    EXPECT_LT(worst({delayed.begin() + std::ptrdiff_t(silent), delayed.end()}, whole), 1e-6);
}

TEST_F(SoundReading, ResamplesAndRemixesInStep) {
    const std::string path = clip("aac.mp4", "-c:a aac -b:a 192k");
    const std::vector<float> other = read(path, {48000, 2, "stereo"}, 0, 48000);
    for (const std::size_t begin : {std::size_t(9600), std::size_t(28800)}) {
        EXPECT_NEAR(toneAmplitude(other, 2, 48000, 440, begin, 4800), 0.5, 0.01);
    }
    EXPECT_LT(worst(other, decodedSound(path, "-ar 48000")), 0.002);
    const std::vector<float> mono = read(path, {44100, 1, "mono"}, 0, 44100);
    EXPECT_LT(worst(mono, decodedSound(path, "-ac 1")), 0.002);
}

TEST_F(SoundReading, GapsBecomeSilence) {
    const std::string path = files_ / "gap.mkv";
    ffmpeg(
        "-f lavfi -i testsrc2=s=64x48:r=25:d=2 -f lavfi -i "
        "\"aevalsrc=0.5*sin(2*PI*440*t)|0.5:s=48000:d=2,aselect='not(between(t,0.5,1))'\" -c:a pcm_s16le "
        "-fps_mode passthrough -af asetpts=PTS '" +
        path + "'");
    const std::vector<float> samples = read(path, {48000, 2, "stereo"}, 0, 2 * 48000);
    EXPECT_NEAR(samples[2 * 20000 + 1], 0.5, 1e-3);
    EXPECT_EQ(samples[2 * 36000 + 1], 0.0f) << "in the gap";
    EXPECT_NEAR(samples[2 * 60000 + 1], 0.5, 1e-3) << "after it";
}

}  // namespace
}  // namespace qv
