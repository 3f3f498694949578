#include "Platform/Media/AudioCrossfade.h"

#include "Tests/Media/SoundTools.h"

namespace qv {
namespace {

class Crossfade : public testing::Test {
  protected:
    TemporaryFolder files_;

    std::unique_ptr<AudioReader> constant(const std::string& name, double level, double seconds, int rate) {
        const std::string path = files_ / name;
        ffmpeg("-f lavfi -i aevalsrc=" + std::to_string(level) + ":s=" + std::to_string(rate) +
               ":d=" + std::to_string(seconds) + " -c:a pcm_f32le '" + path + "'");
        auto reader = AudioReader::open(path, nullptr);
        if (reader) reader->convertTo(kMono, 0);
        return reader;
    }

    static std::vector<float> readAll(AudioCrossfade& mix) {
        std::vector<float> all;
        for (AudioSamples piece = mix.read(1000); !piece.empty(); piece = mix.read(1000))
            all.insert(all.end(), piece.begin(), piece.end());
        EXPECT_EQ(mix.error(), "");
        return all;
    }

    static inline const AudioFormat kMono{48000, 1, "mono"};
    /// Clips of 1 s and 1.5 s that overlap by 0.4 s.
    static constexpr AudioCrossfade::Span kSpan{0.6, 1.0, 2.1};
};

TEST_F(Crossfade, HasEqualPowerOverTheOverlap) {
    AudioCrossfade mix(constant("a.wav", 0.5, 1, 48000), constant("b.wav", 0.25, 1.5, 48000), kMono, kSpan);
    const std::vector<float> all = readAll(mix);
    ASSERT_EQ(all.size(), 100800u);
    EXPECT_DOUBLE_EQ(mix.position(), 2.1);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const double passed = std::clamp((double(i) + 0.5 - 28800) / 19200, 0.0, 1.0);
        const double angle = passed * std::acos(-1.0) / 2;
        ASSERT_NEAR(all[i], 0.5 * std::cos(angle) + 0.25 * std::sin(angle), 1e-6) << i;
    }
}

TEST_F(Crossfade, ASideWithoutSoundIsSilentAndOneThatIsTooLongIsCut) {
    AudioCrossfade outwards(constant("a.wav", 0.5, 3, 48000), nullptr, kMono, kSpan);
    const std::vector<float> fading = readAll(outwards);
    ASSERT_EQ(fading.size(), 100800u);
    EXPECT_FLOAT_EQ(fading[28799], 0.5f);
    EXPECT_NEAR(fading[38400], 0.5 * std::sqrt(0.5), 1e-4);
    EXPECT_EQ(fading[48000], 0.0f);
    AudioCrossfade inwards(nullptr, constant("b.wav", 0.25, 0.9, 48000), kMono, kSpan);
    const std::vector<float> rising = readAll(inwards);
    ASSERT_EQ(rising.size(), 100800u);
    EXPECT_EQ(rising[28799], 0.0f);
    EXPECT_FLOAT_EQ(rising[48000], 0.25f);
    EXPECT_EQ(rising[28800 + 43200 + 10], 0.0f) << "shorter than its pictures";
}

}  // namespace
}  // namespace qv
