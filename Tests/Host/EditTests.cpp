// Parts, moving properties, edit and montage: judged by FFmpeg's programs and values worked out by hand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "Tests/Host/Tool.h"

#include <fmt/format.h>

namespace qv {
namespace {

using ::testing::HasSubstr;

class Edit : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        files_ = new TemporaryFolder;
        clip("a.mp4", "testsrc2=s=160x90:r=25:d=4", "0.4*sin(2*PI*(300+100*floor(t*2))*t)", 4);
        clip("b.mp4", "smptebars=s=120x160:r=30000/1001:d=3", "0.4*sin(2*PI*2000*t)", 3);
        makeClip(path("mute.mp4"), "testsrc2=s=160x90:r=25:d=2", {"-c:v", "libx264"});
        makeClip(path("red.png"), "color=red:s=200x50:r=1:d=1", {"-frames:v", "1"});
        makeClip(path("mask.png"), "color=black:s=160x90:r=1:d=1,drawbox=0:0:80:90:white:fill",
                 {"-frames:v", "1"});
        ffmpeg({"-f", "lavfi", "-i", "sine=1500:r=48000:d=9,volume=4", path("music.wav")});
    }
    static void TearDownTestSuite() { delete files_; }

    static std::string path(const std::string& name) { return *files_ / name; }
    static void write(const std::string& name, const std::string& text) { writeBytes(path(name), text); }

    /// The output's path.
    static std::string make(const std::string& output, Arguments arguments) {
        arguments.insert(arguments.end(), {"-y", "-o", path(output)});
        const Outcome outcome = qvfilter(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_EQ(outcome.output + outcome.errors, "");
        return path(output);
    }
    static int frameCount(const std::string& clip) {
        return std::stoi(probe(clip, "v:0").value("nb_read_frames", std::string("-1")));
    }
    static double seconds(const std::string& clip, const char* stream) {
        return std::stod(probe(clip, stream).value("duration", std::string("-1")));
    }
    /// Hashes of the decoded pictures and of the decoded sound.
    static std::string decoded(const std::string& clip) {
        std::string hashes;
        for (const char* stream : {"0:v", "0:a"})
            hashes += run({"ffmpeg", "-v", "error", "-i", clip, "-map", stream, "-f", "md5", "-"}).output;
        return hashes;
    }
    static void expectMistake(const std::string& project, const std::vector<std::string>& causes) {
        SCOPED_TRACE(project);
        write("wrong.json", project);
        const TemporaryFolder outputs;
        const Outcome outcome = qvfilter({"edit", path("wrong.json"), "-o", outputs / "x.mp4"});
        EXPECT_EQ(outcome.exitCode, 3);
        EXPECT_EQ(outcome.errorLines(), causes.size()) << outcome.errors;
        for (const std::string& cause : causes) EXPECT_THAT(outcome.errors, HasSubstr("wrong.json:" + cause));
        EXPECT_EQ(outputs.fileCount(), 0u);
    }

    static inline TemporaryFolder* files_ = nullptr;

  private:
    static void clip(const std::string& name, const std::string& picture, const std::string& sound,
                     int length) {
        ffmpeg({"-f", "lavfi", "-i", picture, "-f", "lavfi", "-i",
                fmt::format("aevalsrc='{}':s=48000:d={}", sound, length), "-c:v", "libx264", "-bf", "2",
                "-pix_fmt", "yuv420p", "-c:a", "aac", path(name)});
    }
};

TEST_F(Edit, PartsAreExactToTheFrameAndCutTheSound) {
    const std::string source = path("a.mp4");
    const std::pair<const char*, Arguments> cases[] = {
        {"frames.mp4", {"--from", "30f", "--to", "70f"}},
        {"seconds.mp4", {"--from", "0:01.2", "--duration", "1.6"}},
        {"within.mp4", {"--from", "1.23", "--to", "2.79"}},  // begins with the frame that is shown then
    };
    for (const auto& [name, part] : cases) {
        SCOPED_TRACE(name);
        Arguments arguments{"render", "-i", source, "--crf", "8"};
        arguments.insert(arguments.end(), part.begin(), part.end());
        const std::string output = make(name, arguments);
        ASSERT_EQ(frameCount(output), 40);
        EXPECT_NEAR(seconds(output, "a:0"), 1.6, 1e-3);
        for (const int frame : {0, 39}) {
            const std::string shown = rgbFrame(output, frame);
            EXPECT_LT(rmsDifference(shown, rgbFrame(source, 30 + frame)), 4) << frame;
            EXPECT_GT(rmsDifference(shown, rgbFrame(source, 31 + frame)), 5) << frame;
        }
        const std::vector<float> sound = soundOf(output);
        // The pitch changes each half second of the file: at 0.3, 0.8 and 1.3 of the part.
        EXPECT_GT(tone(sound, 500, 0.2), 0.3);
        EXPECT_GT(tone(sound, 600, 0.4), 0.3);
        EXPECT_GT(tone(sound, 800, 1.4), 0.3);
    }
    const std::string slow =
        make("slow.mp4", {"render", "-i", source, "--fps", "12.5", "--size", "90x90", "--fit", "contain"});
    EXPECT_EQ(frameCount(slow), 50);
    EXPECT_EQ(probe(slow, "v:0")["width"], 90);
    EXPECT_EQ(packetHash(slow, "a:0"), packetHash(source, "a:0"));

    const std::string joined =
        make("parts.mp4", {"transition", "wave", "-i", source, "--from", "2", "-i", path("b.mp4"), "--from",
                           "1", "--to", "2.5", "--duration", "12f"});
    EXPECT_EQ(frameCount(joined), (2 + 1.5 - 0.48) * 25 + 0.5);
    EXPECT_GT(tone(soundOf(joined), 700, 0.3), 0.3);
}

TEST_F(Edit, PropertiesMoveAsWorkedOutByHand) {
    const auto still = [&](const std::string& effect, const char* time, const char* from = "0") {
        return rgbFrame(
            make("still.png", {"still", "-i", path("a.mp4"), "--from", from, "--time", time, "-e", effect}));
    };
    const std::string mosaic = "QVMosaicMTIFilter:iTime=0:effectValue=";
    // From 0.2 to 0.8 over a second from the effect's beginning: at a quarter of the way.
    const std::pair<const char*, double> easings[] = {
        {"", 0.2 + 0.6 * 0.25},
        {"~inCubic", 0.2 + 0.6 * std::pow(0.25, 3)},
        {"~outQuad", 0.2 + 0.6 * (1 - 0.75 * 0.75)},
        {"~inOutSine", 0.2 + 0.6 * (1 - std::cos(M_PI * 0.25)) / 2},
        {"~hold", 0.2},
    };
    for (const auto& [easing, value] : easings) {
        const std::string moving =
            "QVMosaicMTIFilter@1-3:iTime=0:effectValue=0.2@0.5,0.8@1.5" + std::string(easing);
        EXPECT_EQ(still(moving, "1.76"), still(mosaic + fmt::format("{:.9f}", value), "1.76")) << easing;
    }
    const std::string moving = "QVMosaicMTIFilter@1-3:iTime=0:effectValue=0.2@0,0.8@50f";
    EXPECT_EQ(still(moving, "0.96"), still("QVMosaicMTIFilter@3-4", "0.96")) << "before its part";
    EXPECT_EQ(still(moving, "3"), still("QVMosaicMTIFilter@0-1", "3")) << "after it";
    EXPECT_NE(still(moving, "1"), still("QVMosaicMTIFilter@3-4", "1"));
    EXPECT_EQ(still(moving, "1.52", "1"), still(mosaic + "0.356", "1.52", "1"))
        << "counted from the part's beginning";
    const auto colour = [&](const std::string& colors) {
        return rgbFrame(
            make("still.png", {"still", "-i", path("a.mp4"), "--time", "1", "--mask", path("mask.png"), "-e",
                               "QVAIEdgeGlowFilter:iTime=0:colors=" + colors}));
    };
    EXPECT_EQ(colour("#000000@0,#204060@2"), colour("#102030"));
}

TEST_F(Edit, AProjectHasItsLengthsItsSoundAndTheSameFramesEachTime) {
    write("intro.json", R"({"clips": [{"color": "#0000ff", "duration": "10f"}]})");
    write("project.json", R"(// A project with everything.
{
    "size": "160x90", "fps": 25, "values": {"title": "red"},
    "clips": [
        {"include": "intro.json"},
        {"file": "a.mp4", "from": 1, "to": "2.6", "effects": ["snow@0.2-1:effectValue=0@0,1@0.5~outBack"]},
        {"file": "${title}.png", "duration": 2, "fit": "contain",
         "transition": {"class": "QVSliceTransitionMTIFilter", "duration": 0.6, "set": {"slope": "0@0,1@0.6"}}},
        {"file": "b.mp4", "duration": 2, "gain": "-6dB", "transition": "wave" /* of a second */},
        {"file": "mute.mp4"}
    ],
    "effects": [{"class": "QVBlackWhiteMTIFilter", "from": 5,
                 "set": {"effectValue": [{"at": 0, "value": 0}, {"at": 1, "value": 1, "easing": "inOutCubic"}]}}],
    "sound": {"file": "music.wav", "offset": 0.4, "gain": 0.5, "fadeIn": 0.4, "fadeOut": 1}
})");
    const Arguments edit{"edit", path("project.json"), "--codec", "ffv1", "--audio-codec", "flac"};
    const std::string output = make("project.mkv", edit);
    // 0.4 + 1.6 + (2 - 0.6) + (2 - 1) + 2 seconds.
    EXPECT_EQ(frameCount(output), 160);
    const auto rgb = [&](int frame) {
        const std::string bytes = rgbFrame(output, frame).substr((45 * 160 + 80) * 3, 3);
        return std::vector<int>{std::uint8_t(bytes[0]), std::uint8_t(bytes[1]), std::uint8_t(bytes[2])};
    };
    using testing::ElementsAre, testing::Ge, testing::Le;
    EXPECT_THAT(rgb(9), ElementsAre(Le(3), Le(3), Ge(250)));
    EXPECT_THAT(rgb(56), ElementsAre(Ge(250), Le(3), Le(3))) << "the picture alone";
    EXPECT_LT(rmsDifference(rgbFrame(output, 10), rgbFrame(path("a.mp4"), 25)), 4);
    EXPECT_LT(meanChroma(rgbFrame(output, 158)), 4);

    const std::vector<float> sound = soundOf(output);
    EXPECT_LT(tone(sound, 1500, 0.3), 0.01) << "the music has not begun";
    const double level = 0.125 * 4 * 0.5;  // of the sine, as FFmpeg makes it
    EXPECT_NEAR(tone(sound, 1500, 0.6), level * std::sin(M_PI / 4), 0.02);
    EXPECT_NEAR(tone(sound, 1500, 3.5), level, 0.02);
    EXPECT_NEAR(tone(sound, 1500, 5.9), level * std::cos(M_PI / 4), 0.02);
    EXPECT_NEAR(tone(sound, 2000, 4.2), 0.4 * std::pow(10, -6.0 / 20), 0.02);

    const std::string expected = decoded(output);
    EXPECT_EQ(decoded(make("again.mkv", edit)), expected);
    Arguments alone{"taskset", "-c",        "0",
                    QV_TOOL,   "edit",      path("project.json"),
                    "--codec", "ffv1",      "--audio-codec",
                    "flac",    "--threads", "1",
                    "-y",      "-o",        path("alone.mkv")};
    ASSERT_EQ(run(alone).exitCode, 0);
    EXPECT_EQ(decoded(path("alone.mkv")), expected);

    // What is printed, and what other programs read, is the same project.
    write("printed.json", qvfilter({"edit", path("project.json"), "--print"}).output);
    make("timeline.mkv", {"edit", path("printed.json"), "--codec", "ffv1", "--audio-codec", "flac"});
    EXPECT_EQ(decoded(path("timeline.mkv")), expected);
    ASSERT_EQ(qvfilter({"edit", path("project.json"), "--write-otio", path("project.otio")}).exitCode, 0);
    make("timeline.mkv", {"edit", path("project.otio"), "--codec", "ffv1", "--audio-codec", "flac"});
    EXPECT_EQ(decoded(path("timeline.mkv")), expected);
    const Outcome blue =
        qvfilter({"edit", path("project.json"), "--set", "title=blue", "-o", path("blue.mkv")});
    EXPECT_THAT(blue.errors, HasSubstr("project.json:7: clips[2]: cannot read '" + path("blue.png")));
}

TEST_F(Edit, EveryMistakeHasItsPlace) {
    expectMistake(
        "{\"clips\": [\n{\"file\": \"none.mp4\"},\n{\"file\": \"a.mp4\", \"effects\": [\"snow@3-9\"]},\n"
        "{\"file\": \"mute.mp4\", \"transition\": {\"class\": \"wave\", \"duration\": 3}}]}",
        {"2: clips[0]: cannot read", "3: clips[1].effects[0]: QVSnowMTIFilter ends at 9.000 s, past",
         "4: clips[2]: "});
    expectMistake(
        "{\"clips\": [{\"file\": \"a.mp4\",\n \"effects\": [{\"class\": \"snow\", \"set\": {\n\"speed\": 1,\n"
        "\"effectValue\": [{\"at\": 1, \"value\": 0}, {\"at\": 1, \"value\": 1}],\n\"iTime\": "
        "\"0@0,1@1~inWave\"}}]}]}",
        {"3: clips[0].effects[0].set.speed: QVSnowMTIFilter has no property",
         "4: clips[0].effects[0].set.effectValue: effectValue has two keys at one time, 1 s",
         "5: clips[0].effects[0].set.iTime: QVSnowMTIFilter: there is no easing 'inWave'"});
    const std::pair<const char*, const char*> cases[] = {
        {"{\"clips\": [{\"file\": \"a.mp4\", \"from\": 5}]}", "1: clips[0]: "},
        {"{\"clips\": [{\"file\": \"a.mp4\", \"gain\": 1e999}]}", "1: number overflow"},
        {"{\"clips\": [{\"file\": \"a.mp4\", \"from\": NaN}]}", "1: syntax error"},
        {"{\"clips\": [\n{\"file\": \"a.mp4\",}]}", "2: syntax error"},
        {"{\"clips\": [{\"file\": \"a.mp4\"}], \"clips\": []}", "1: 'clips' is given twice"},
        {"{\"clips\": [{\"file\": \"a.mp4\", \"form\": 1}]}", "1: clips[0].form: there is no 'form' here"},
        {"{\"clips\": [{\"file\": \"${clip}\"}]}", "1: clips[0].file: there is no value for '${clip}'"},
        {"{\"clips\": [{\"include\": \"wrong.json\"}]}", "1: clips[0].include: "},
        {"{\"clips\": [{\"file\": \"a.mp4\"}], \"sound\": {\"file\": \"mute.mp4\"}}",
         "1: sound: there is no sound in"},
        {"{\"clips\": []}", "1: there is no clip in it"},
        {"{\"clips\": [{\"color\": \"#ff0000\"}]}", "1: no clip gives the output a size"},
    };
    for (const auto& [project, cause] : cases) expectMistake(project, {cause});
    expectMistake("{\"clips\": " + std::string(10000, '[') + std::string(10000, ']') + "}",
                  {"1: lists and objects lie"});

    const auto expectUsage = [](const Arguments& more, const std::string& cause) {
        Arguments arguments{"render", "-i", path("a.mp4"), "-o", "OUT/x.mp4"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        expectFailure(arguments, 2, cause);
    };
    expectUsage({"-e", "snow@1-9"}, "past its clip's end");
    expectUsage({"-e", "snow:effectValue=0@0,1@0"}, "two keys at one time");
    expectUsage({"-e", "snow:effectValue=0@0,2@1"}, "outside 0 to 1");
    expectUsage({"--from", "12g"}, "--from takes seconds");
    expectUsage({"--from", "2", "--to", "1"}, "ends at 1.000 s and begins at 2.000 s");
    expectUsage({"--fps", "0"}, "--fps");
    expectFailure({"render", "-i", path("a.mp4"), "--to", "9", "-o", "OUT/x.mp4"}, 3,
                  "ends at 4.000 s, before its part");
    expectFailure({"bench", "QVMosaicMTIFilter:effectValue=0@0,1@1"}, 2, "takes a number");
}

TEST_F(Edit, MontagesAreChosenByTheirSeed) {
    const auto print = [&](const char* seed) {
        return qvfilterJSON({"montage", path("red.png"), path("a.mp4"), path("b.mp4"), path("mute.mp4"),
                             path("red.png"), "--each", "2.5", "--transitions", "QVSmooth*", "--seed", seed,
                             "--print"});
    };
    const Json montage = print("7");
    EXPECT_EQ(print("7"), montage);
    EXPECT_NE(print("8"), montage);
    std::string last;
    for (std::size_t i = 1; i < 5; ++i) {
        const std::string name = montage["clips"][i]["transition"]["class"];
        EXPECT_TRUE(name.starts_with("QVSmooth") && name != last) << name;
        last = name;
    }
    EXPECT_FALSE(montage["clips"][3].contains("duration")) << "shorter than it would be seen";
    const std::string output =
        make("montage.mp4", {"montage", path("red.png"), path("a.mp4"), path("mute.mp4"), "--each", "2.5",
                             "--size", "160x90", "--music", path("music.wav"), "--transitions", "wave"});
    EXPECT_NEAR(frameCount(output), (2.5 + 2.5 + 2 - 2 * 0.6) * 25, 1);
    EXPECT_NEAR(seconds(output, "a:0"), seconds(output, "v:0"), 0.001);
    expectFailure({"montage", path("a.mp4"), "--transitions", "Nothing*", "-o", "OUT/x.mp4"}, 2,
                  "'Nothing*'");
}

TEST_F(Edit, TimelinesOfEditingPrograms) {
    const auto range = [](int start, int length) {
        return fmt::format(R"({{"OTIO_SCHEMA": "TimeRange.1", "start_time": {{"rate": 25, "value": {}}},
                               "duration": {{"rate": 25, "value": {}}}}})",
                           start, length);
    };
    const auto clip = [&](const std::string& name, int start, int length, const std::string& more = "") {
        // The file's own time begins at an hour.
        return fmt::format(R"({{"OTIO_SCHEMA": "Clip.1", {}"source_range": {}, "media_reference":
                               {{"OTIO_SCHEMA": "ExternalReference.1", "target_url": "{}", "available_range": {}}}}})",
                           more, range(90000 + start, length), name, range(90000, 100));
    };
    const std::string transition =
        R"({"OTIO_SCHEMA": "Transition.1", "transition_type": "QVWaveTransitionMTIFilter",
        "in_offset": {"rate": 25, "value": 5}, "out_offset": {"rate": 25, "value": 10}},)";
    const std::string more = R"("markers": [{"OTIO_SCHEMA": "Marker.2", "name": "here"}], "effects": [
        {"effect_name": "QVBlackWhiteMTIFilter", "metadata": {"qvfilter": {"effectValue": 1, "from": 1}}},
        {"effect_name": "Something else"}],)";
    write("cut.otio", R"({"OTIO_SCHEMA": "Timeline.1", "tracks": {"children": [
        {"OTIO_SCHEMA": "Track.1", "kind": "Video", "children": [)" +
                          clip("a.mp4", 25, 40, more) + "," + transition + clip("mute.mp4", 10, 30) +
                          R"(, {"OTIO_SCHEMA": "Gap.1", "source_range": )" + range(0, 5) + R"(}]},
        {"OTIO_SCHEMA": "Track.1", "kind": "Audio", "children": [{"OTIO_SCHEMA": "Gap.1", "source_range": )" +
                          range(0, 50) + "}, " + clip("music.wav", 0, 20) + "]}]}}");
    const Outcome outcome =
        qvfilter({"edit", path("cut.otio"), "--codec", "ffv1", "-y", "-o", path("cut.mkv")});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr("the marker 'here' is left out"));
    EXPECT_THAT(outcome.errors, HasSubstr("no effect 'Something else'; it is left out"));
    EXPECT_EQ(outcome.errorLines(), 2u);
    EXPECT_EQ(frameCount(path("cut.mkv")), 40 + 30 + 5);
    const auto like = [&](int frame, const char* source, int sourceFrame) {
        return rmsDifference(rgbFrame(path("cut.mkv"), frame), rgbFrame(path(source), sourceFrame));
    };
    EXPECT_LT(like(0, "a.mp4", 25), 4);
    EXPECT_LT(meanChroma(rgbFrame(path("cut.mkv"), 30)), 4) << "grey from a second on";
    EXPECT_LT(like(50, "mute.mp4", 20), 4) << "the cut lies at frame 40, the transition 5 before to 10 after";
    EXPECT_GT(like(45, "mute.mp4", 15), 6);
    const std::vector<float> sound = soundOf(path("cut.mkv"));
    EXPECT_LT(tone(sound, 1500, 1.9), 0.01);
    EXPECT_GT(tone(sound, 1500, 2.2), 0.3);

    write("short.otio", R"({"OTIO_SCHEMA": "Timeline.1", "tracks": {"children": [{"OTIO_SCHEMA": "Track.1",
        "kind": "Video", "children": [)" +
                            clip("a.mp4", 0, 40) + "," + transition + clip("mute.mp4", 2, 30) + "]}]}}");
    expectFailure({"edit", path("short.otio"), "-o", "OUT/x.mp4"}, 3,
                  "needs 0.120 s of '" + path("mute.mp4"));
}

}  // namespace
}  // namespace qv
