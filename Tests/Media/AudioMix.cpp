#include "Platform/Media/AudioMix.h"

#include "Tests/Media/SoundTools.h"

namespace qv {
namespace {

class Mix : public testing::Test {
  protected:
    TemporaryFolder files_;

    /// A file of one level, in mono.
    std::string constant(const std::string& name, double level, double seconds) {
        const std::string path = files_ / name;
        ffmpeg("-f lavfi -i aevalsrc=" + std::to_string(level) + ":s=48000:d=" + std::to_string(seconds) +
               " -c:a pcm_f32le '" + path + "'");
        return path;
    }

    static std::vector<float> read(AudioMix&& mix, std::size_t count) {
        std::vector<float> all;
        while (all.size() < count) {
            const AudioSamples piece = mix.read(1000);
            if (piece.empty()) break;
            all.insert(all.end(), piece.begin(), piece.end());
        }
        EXPECT_EQ(mix.error(), "");
        EXPECT_EQ(mix.position(), std::int64_t(all.size()));
        EXPECT_GE(all.size(), count);
        return all;
    }

    static inline const AudioFormat kMono{48000, 1, "mono"};
};

TEST_F(Mix, TwoThatOverlapCrossFadeWithEqualPower) {
    const std::vector<float> all =
        read({kMono,
              {{.path = constant("a.wav", 0.5, 1), .end = 1, .fadeOut = 0.4},
               {.path = constant("b.wav", 0.25, 1.5), .start = 0.6, .end = 2.1, .fadeIn = 0.4}}},
             100800);
    for (std::size_t i = 0; i < 100800; ++i) {
        const double passed = std::clamp((double(i) + 0.5 - 28800) / 19200, 0.0, 1.0);
        const double angle = passed * std::acos(-1.0) / 2;
        ASSERT_NEAR(all[i], 0.5 * std::cos(angle) + 0.25 * std::sin(angle), 1e-6) << i;
    }
}

TEST_F(Mix, PartsBeginAndEndToTheSample) {
    const std::string mute = files_ / "mute.mkv";
    ffmpeg("-f lavfi -i color=red:s=16x16:r=25:d=1 '" + mute + "'");
    const std::string level = constant("a.wav", 0.5, 1), other = constant("b.wav", 0.25, 1);
    const std::vector<float> all =
        read({kMono,
              {{.path = level, .origin = 0.75, .start = 1.5, .end = 3},  // both longer than their files
               {.path = other, .start = 0.3, .end = 2, .gain = 2},
               {.path = mute, .end = 2},
               {.path = level, .start = 0.1, .end = 0.5}}},
             96000);
    for (std::size_t i = 0; i < 96000; ++i) {
        const auto within = [&](std::size_t from, std::size_t to) {
            return i >= from && i < to ? 0.5f : 0.0f;
        };
        ASSERT_FLOAT_EQ(all[i], within(4800, 24000) + within(14400, 62400) + within(72000, 84000)) << i;
    }
}

TEST_F(Mix, APartFromLateInAFileIsInStep) {
    // A tick each second, each of a pitch of its own.
    const std::string path = files_ / "ticks.m4a";
    ffmpeg(
        "-f lavfi -i \"aevalsrc='0.5*sin(2*PI*t*(500+100*floor(t)))*lt(mod(t,1),0.1)':s=48000:d=20\" -c:a "
        "aac '" +
        path + "'");
    const std::vector<float> all = read({kMono, {{.path = path, .origin = 17.5, .end = 2}}}, 96000);
    EXPECT_GT(toneAmplitude(all, 1, 48000, 500 + 1800, 24000 + 480, 3840), 0.4);
    EXPECT_LT(toneAmplitude(all, 1, 48000, 500 + 1800, 24000 - 3840, 3600), 0.05);
    EXPECT_GT(toneAmplitude(all, 1, 48000, 500 + 1900, 72000 + 480, 3840), 0.4);
}

}  // namespace
}  // namespace qv
