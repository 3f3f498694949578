#include "Platform/Media/ClipWriter.h"

#include "Tests/Media/SoundTools.h"

namespace qv {
namespace {

constexpr int kRate = 44100;

/// A tone that sets in at half a second, on the left only.
AudioSamples tone() {
    AudioSamples samples(std::size_t(kRate) * 2);
    for (int i = kRate / 2; i < kRate; ++i) {
        samples[std::size_t(2 * i)] = float(0.5 * std::sin(2 * std::numbers::pi * 1000 * i / kRate));
    }
    return samples;
}

std::string writeClip(const TemporaryFolder& files, const std::string& name, ClipWriterOptions options) {
    const std::string path = files / name;
    ClipVideoFormat video;
    video.width = 64, video.height = 48;
    video.averageFrameRate = {25, 1};
    options.sound.sampleRate = kRate, options.sound.channels = 2, options.sound.channelLayout = "stereo";
    std::string error;
    const auto writer = ClipWriter::create(path, video, options, nullptr, &error);
    EXPECT_TRUE(writer) << error;
    if (!writer) return path;
    const AudioSamples samples = tone();
    for (std::int64_t i = 0; i < 25; ++i) {
        const auto from = samples.begin() + i * kRate * 2 / 25, to = from + kRate * 2 / 25;
        EXPECT_TRUE(writer->write(AudioSamples(from, to))) << writer->error();
        PixelBuffer frame = writer->makeFrame();
        for (int p = 0; p < 3; ++p)
            std::memset(frame.plane(p).data, 128, frame.plane(p).rowBytes * (p ? 24 : 48));
        EXPECT_TRUE(writer->write(ClipFrame{frame, i, 1})) << writer->error();
    }
    EXPECT_TRUE(writer->finish()) << writer->error();
    return path;
}

TEST(SoundEncoding, EveryContainerKeepsSoundAndPicturesInStep) {
    struct Case {
        const char *name, *codec;
        bool lossless;
        double tolerance;  ///< seconds
    };
    const TemporaryFolder files;
    for (const Case& each : {Case{"a.mp4", "aac", false, 0.002}, Case{"a.mov", "pcm_s24le", true, 1e-4},
                             Case{"b.mov", "aac", false, 0.002}, Case{"a.mkv", "flac", false, 1e-4},
                             Case{"a.webm", "opus", false, 0.002}, Case{"a.avi", "pcm_s16le", false, 1e-4}}) {
        SCOPED_TRACE(each.name);
        ClipWriterOptions options;
        options.sound.lossless = each.lossless;
        const std::string path = writeClip(files, each.name, options);
        EXPECT_EQ(ffprobe("-select_streams a -show_entries stream=codec_name", path), each.codec);
        EXPECT_EQ(std::stod(ffprobe("-select_streams v -show_entries stream=start_time", path)), 0.0);
        const int rate = std::stoi(ffprobe("-select_streams a -show_entries stream=sample_rate", path));
        // The sound from time 0 on, as a player hears it.
        const std::vector<float> sound = decodedSound(path, "-copyts -af aresample=async=1:first_pts=0");
        EXPECT_NEAR(double(sound.size()) / 2 / rate, 1.0, each.tolerance + 1024.0 / rate);
        std::size_t onset = 0;
        while (onset + 2 < sound.size() && std::abs(sound[onset]) < 0.25f) onset += 2;
        // The tone passes 0.25 a twelfth of its period after it sets in.
        EXPECT_NEAR(double(onset) / 2 / rate, 0.5 + 1.0 / 12000, each.tolerance);
        for (const std::size_t channel : {0, 1}) {
            const std::vector<float> moved(sound.begin() + std::ptrdiff_t(channel), sound.end());
            EXPECT_NEAR(
                toneAmplitude(moved, 2, rate, 1000, std::size_t(rate * 6 / 10), std::size_t(rate / 5)),
                channel ? 0 : 0.5, 0.02);
        }
    }
}

}  // namespace
}  // namespace qv
