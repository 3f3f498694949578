// transition: two clips become one, judged by FFmpeg's programs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

constexpr const char* kClass = "QVBrightColorDissolveTransitionMTIFilter";

class Transition : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        files_ = new TemporaryFolder;
        const auto sine = [](int frequency, const std::string& seconds) {
            return "sine=" + std::to_string(frequency) + ":r=48000:d=" + seconds +
                   ",volume=4,aformat=channel_layouts=stereo";
        };
        clip("a.mp4", "testsrc2=s=160x90:r=25:d=2", sine(440, "2"));
        clip("b.mp4", "smptebars=s=160x90:r=25:d=1.6", sine(1000, "1.6"));
        clip("mute.mp4", "smptebars=s=160x90:r=25:d=1.6", "");
        clip("other.mkv", "smptebars=s=96x128:r=30000/1001:d=2",
             "sine=1000:r=44100:d=2,volume=4,aformat=channel_layouts=mono");
        clip("short.mp4", "smptebars=s=160x90:r=25:d=0.4", "");
        makeClip(*files_ / "picture.png", "smptebars=s=160x90:r=1:d=1", {"-frames:v", "1"});
        makeClip(*files_ / "wide.png", "color=red:s=200x50:r=1:d=1", {"-frames:v", "1"});
        makeClip(*files_ / "blue.png", "color=blue:s=160x90:r=1:d=1", {"-frames:v", "1"});
    }
    static void TearDownTestSuite() { delete files_; }

    static std::string path(const std::string& name) { return *files_ / name; }

    static Arguments command(const std::string& first, const std::string& second, const Arguments& more) {
        Arguments arguments{"transition", kClass, "-y", "-i", path(first), "-i", path(second)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    /// The output's path.
    static std::string make(const std::string& first, const std::string& second, const std::string& output,
                            Arguments more = {}) {
        more.insert(more.end(), {"-o", path(output)});
        const Outcome outcome = qvfilter(command(first, second, more));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "");
        return path(output);
    }
    static double number(const Json& stream, const char* key) {
        return std::stod(stream.value(key, std::string("-1")));
    }
    static inline TemporaryFolder* files_ = nullptr;

  private:
    static void clip(const std::string& name, const std::string& picture, const std::string& sound) {
        Arguments arguments{"-f", "lavfi", "-i", picture};
        if (!sound.empty()) arguments.insert(arguments.end(), {"-f", "lavfi", "-i", sound, "-c:a", "aac"});
        arguments.insert(arguments.end(), {"-c:v", "libx264", "-pix_fmt", "yuv420p", *files_ / name});
        ffmpeg(arguments);
    }
};

TEST_F(Transition, JoinsTheClipsAndFadesTheirSound) {
    const std::string output = make("a.mp4", "b.mp4", "out.mp4", {"--duration", "0.8"});
    const Json video = probe(output, "v:0"), audio = probe(output, "a:0");
    EXPECT_EQ(number(video, "nb_read_frames"), (2 + 1.6 - 0.8) * 25);
    EXPECT_EQ(number(video, "start_time"), 0);
    EXPECT_NEAR(number(video, "duration"), 2.8, 1e-6);
    EXPECT_NEAR(number(audio, "duration"), 2.8, 1e-4);
    const std::vector<std::int64_t> times = frameTimes(output);
    for (std::size_t i = 1; i < times.size(); ++i) ASSERT_EQ(times[i] - times[i - 1], times[1] - times[0]);

    const auto like = [&](int frame, const char* source, int sourceFrame) {
        return rmsDifference(rgbFrame(output, frame), rgbFrame(path(source), sourceFrame));
    };
    EXPECT_LT(like(0, "a.mp4", 0), 5);
    EXPECT_LT(like(29, "a.mp4", 29), 5) << "the last frame before the transition";
    EXPECT_GT(like(40, "a.mp4", 40), 12);
    EXPECT_GT(like(40, "b.mp4", 10), 12);
    EXPECT_LT(like(50, "b.mp4", 20), 5) << "the first one after it";
    EXPECT_LT(like(69, "b.mp4", 39), 5);

    const std::vector<float> samples = soundOf(output);
    const double full = tone(samples, 440, 0.5);
    EXPECT_GT(full, 0.3);
    EXPECT_NEAR(tone(samples, 440, 1.1), full, 0.02);
    for (const double passed : {0.25, 0.5, 0.75}) {
        const double angle = passed * std::numbers::pi / 2, time = 1.2 + passed * 0.8;
        EXPECT_NEAR(tone(samples, 440, time), full * std::cos(angle), 0.02) << passed;
        EXPECT_NEAR(tone(samples, 1000, time), full * std::sin(angle), 0.02) << passed;
    }
    EXPECT_LT(tone(samples, 440, 2.1), 0.01);
    EXPECT_NEAR(tone(samples, 1000, 2.1), full, 0.02);
}

TEST_F(Transition, TheSecondClipTakesTheFirstOnesKind) {
    const std::string output = make("a.mp4", "other.mkv", "kind.mp4", {"--duration", "0.5"});
    const Json video = probe(output, "v:0"), audio = probe(output, "a:0");
    EXPECT_EQ(video["width"], 160);
    EXPECT_EQ(video["height"], 90);
    EXPECT_EQ(video["avg_frame_rate"], "25/1");
    EXPECT_NEAR(number(video, "nb_read_frames"), 3.5 * 25, 1);
    EXPECT_EQ(audio["sample_rate"], "48000");
    EXPECT_EQ(audio["channels"], 2);
    EXPECT_NEAR(number(audio, "duration"), number(video, "duration"), 0.04);
    EXPECT_GT(tone(soundOf(output), 1000, 3), 0.3);
}

TEST_F(Transition, SoundOnOneSideOrNone) {
    const std::vector<float> leaving =
        soundOf(make("a.mp4", "mute.mp4", "leaving.mov", {"--duration", "0.8"}));
    EXPECT_NEAR(tone(leaving, 440, 1.6), tone(leaving, 440, 0.5) * std::sqrt(0.5), 0.02);
    EXPECT_LT(tone(leaving, 440, 2.2), 0.01);
    const std::vector<float> coming = soundOf(make("mute.mp4", "b.mp4", "coming.mkv", {"--duration", "0.8"}));
    EXPECT_LT(tone(coming, 1000, 0.5), 0.01);
    EXPECT_GT(tone(coming, 1000, 2), 0.3);
    EXPECT_TRUE(probe(make("mute.mp4", "mute.mp4", "mute-mute.mp4"), "a:0").empty());
    EXPECT_TRUE(probe(make("a.mp4", "b.mp4", "asked.mp4", {"--no-audio"}), "a:0").empty());
}

TEST_F(Transition, PicturesStandStill) {
    const Json clipFirst = probe(make("a.mp4", "picture.png", "still.mp4"), "v:0");
    EXPECT_EQ(number(clipFirst, "nb_read_frames"), (2 + 3 - 1) * 25) << "3 s without a wish";
    const std::string pictureFirst =
        make("picture.png", "a.mp4", "first.mp4", {"--still-seconds", "1.2", "--duration", "0.4"});
    EXPECT_EQ(number(probe(pictureFirst, "v:0"), "nb_read_frames"), (1.2 + 2 - 0.4) * 25);
    EXPECT_LT(rmsDifference(rgbFrame(pictureFirst, 3), rgbFrame(path("picture.png"))), 12);
    EXPECT_NEAR(tone(soundOf(pictureFirst), 440, 2.5), tone(soundOf(path("a.mp4")), 440, 1), 0.02);
    const Json two = probe(make("wide.png", "blue.png", "two.mp4", {"--still-seconds", "1.5"}), "v:0");
    EXPECT_EQ(two["width"], 200);
    EXPECT_EQ(number(two, "nb_read_frames"), 2 * 30);
}

TEST_F(Transition, OtherShapesAreFittedAndTurnedClipsUpright) {
    // One colour, so that black beside it shows.
    const auto isRed = [&](const Arguments& more) {
        Arguments arguments{"--at", "1"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const std::string rgb = rgbFrame(make("blue.png", "wide.png", "fit.png", arguments));
        const auto red = [&](int y) { return std::uint8_t(rgb[std::size_t(y * 160 * 3)]) > 250; };
        return std::pair{red(0), red(45)};
    };
    EXPECT_EQ(isRed({}), std::pair(true, true));
    EXPECT_EQ(isRed({"--fit", "stretch"}), std::pair(true, true));
    EXPECT_EQ(isRed({"--fit", "contain"}), std::pair(false, true));

    ffmpeg({"-i", path("other.mkv"), "-c", "copy", "-metadata:s:v", "rotate=90", path("turned.mp4")});
    const std::string output = make("turned.mp4", "b.mp4", "upright.mp4", {"--duration", "0.4"});
    const std::string shown = rgbFrame(output), source = rgbFrame(path("turned.mp4"));
    EXPECT_EQ(shown.size(), 128u * 96 * 3) << "a player turns it";
    EXPECT_LT(rmsDifference(shown, source), 8);
    // The bars of the second stand upright as a player shows them.
    const std::string last = rgbFrame(output, 90);
    const auto red = [&](int x, int y) { return std::uint8_t(last[std::size_t((y * 128 + x) * 3)]); };
    EXPECT_NEAR(red(20, 10), red(20, 50), 12);
    EXPECT_GT(std::abs(red(5, 20) - red(40, 20)) + std::abs(red(25, 20) - red(120, 20)), 60);
}

TEST_F(Transition, OneMomentAndStrips) {
    const auto moment = [&](const char* progress) {
        return rgbFrame(make("a.mp4", "b.mp4", "at.png", {"--at", progress, "--duration", "0.8"}));
    };
    const std::string start = moment("0"), end = moment("1");
    const auto unlike = [&](int frame) { return rmsDifference(start, rgbFrame(path("a.mp4"), frame)); };
    EXPECT_LT(unlike(30), std::min(unlike(29), unlike(31)));
    EXPECT_LT(rmsDifference(end, rgbFrame(path("b.mp4"), 20)), 12);
    EXPECT_GT(rmsDifference(start, end), 50);
    const Json strip =
        probe(make("a.mp4", "picture.png", "strip.png", {"--strip", "4", "--size", "80x44"}), "v:0");
    EXPECT_GE(strip["width"], 4 * 80);
    EXPECT_LE(strip["width"], 4 * 90);
    EXPECT_GT(strip["height"], 44);
}

TEST_F(Transition, ClipsWithoutAnIndex) {
    // Neither says where its last frame ends: the last one stored is not the last one shown, or has no time.
    for (const auto& [name, options] : {std::pair{"reordered.ts", Arguments{"-c:v", "libx264", "-bf", "2"}},
                                        {"brief.mpg", {"-c:v", "mpeg2video", "-bf", "0"}}}) {
        makeClip(path(name), "testsrc2=s=64x48:r=25:d=1", options);
        const std::string output = make(name, name, "joined.mkv", {"--duration", "0.2"});
        const std::vector<std::int64_t> times = frameTimes(output);
        ASSERT_EQ(times.size(), 45u) << name;
        for (std::size_t i = 1; i < times.size(); ++i) ASSERT_EQ(times[i] - times[i - 1], 40) << name << i;
    }
}

TEST_F(Transition, OneNoteForEachFileThatIsDeinterlaced) {
    makeClip(path("i.ts"), "testsrc2=s=64x48:r=50:d=1,tinterlace=interleave_top",
             {"-c:v", "mpeg2video", "-flags", "+ildct+ilme", "-top", "1"});
    const std::string note = "qvfilter: note: '" + path("i.ts") + "' is deinterlaced\n";
    const auto errors = [](Arguments command, const Arguments& more) {
        command.insert(command.end(), more.begin(), more.end());
        return qvfilter(command).errors;
    };
    const Arguments commands[] = {
        command("i.ts", "i.ts", {"--duration", "0.2", "-o", path("joined.mkv")}),
        {"still", "-i", path("i.ts"), "--mask", path("i.ts"), "-y", "-o", path("still.png")},
        {"still", "-i", path("blue.png"), "--mask", path("i.ts"), "-y", "-o", path("still.png")},
        {"render", "-i", path("a.mp4"), "--mask", path("i.ts"), "-y", "-o", path("masked.mp4")},
    };
    for (const Arguments& each : commands) {
        EXPECT_EQ(errors(each, {}), note) << each[0];
        EXPECT_EQ(errors(each, {"--deinterlace", "off"}), "") << each[0];
    }
}

TEST_F(Transition, WhatCannotBeIsNamed) {
    const auto expectFailure = [](Arguments arguments, int code, const std::string& cause,
                                  const char* output = "OUT/x.mp4") {
        arguments.insert(arguments.begin(), "transition");
        arguments.insert(arguments.end(), {"-o", output});
        qv::expectFailure(arguments, code, cause);
    };
    const std::string a = path("a.mp4"), b = path("b.mp4"), brief = path("short.mp4");
    expectFailure({kClass, "-i", a, "-i", brief}, 3,
                  "short.mp4' lasts 0.400 s, which is shorter than the transition of 1.000 s");
    expectFailure({kClass, "-i", brief, "-i", a}, 3, "short.mp4' lasts 0.400 s");
    expectFailure({kClass, "-i", path("blue.png"), "-i", a, "--still-seconds", "0.5"}, 3,
                  "blue.png' lasts 0.500 s");
    expectFailure({kClass, "-i", a}, 2, "two inputs");
    expectFailure({kClass, "-i", a, "-i", b, "-i", a}, 2, "two inputs");
    expectFailure({kClass, "-i", a, "-i", path("none.mp4")}, 3, "none.mp4");
    for (const char* duration : {"0", "-1", "soon"})
        expectFailure({kClass, "-i", a, "-i", b, "--duration", duration}, 2, "--duration");
    expectFailure({"QVMosaicMTIFilter", "-i", a, "-i", b}, 2,
                  "QVMosaicMTIFilter is not a transition but an effect");
    for (auto [name, what] : {std::pair{"QVFilmTransitionRotationBlurFilter", "a filter over one clip"},
                              {"QVFilmBoxBlurFilter", "a part of transitions"},
                              {"fisheyemirror", "a filter over one clip"}}) {
        expectFailure({name, "-i", a, "-i", b}, 2, std::string("is not a transition but ") + what);
    }
    expectFailure({"ScrolTransition", "-i", a, "-i", b}, 2, "did you mean QVScrollTransitionMTIFilter");
    expectFailure({std::string(kClass) + ":speed=3", "-i", a, "-i", b}, 2, "speed");
    expectFailure({kClass, "-i", a, "-i", b, "--at", "1.5"}, 2, "--at", "OUT/x.png");
    for (const char* count : {"0", "1"})
        expectFailure({kClass, "-i", a, "-i", b, "--strip", count}, 2, "--strip", "OUT/x.png");
    expectFailure({kClass, "-i", a, "-i", b, "--at", "0.5"}, 2, "a picture is written as");
    expectFailure({kClass, "-i", a, "-i", b, "--audio-codec", "tape"}, 5, "tape");
    expectFailure({kClass, "-i", a, "-i", b, "--audio-codec", "copy"}, 5, "cut or mixed cannot be copied");
    make("a.mp4", "a.mp4", "same.mp4");  // the same file twice is nothing special
}

}  // namespace
}  // namespace qv
