// Moving pictures, sequences of pictures, and pixels through pipes, as other programs read and make them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace fs = std::filesystem;

/// What a program of Python's prints; OpenCV and numpy judge. The arguments are in sys.argv.
std::string python(const std::string& program, Arguments arguments) {
    arguments.insert(arguments.begin(),
                     {"/usr/bin/python3", "-c", "import sys, cv2, numpy as np\n" + program});
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    return outcome.output;
}

/// Durations of the frames of an animated WebP in milliseconds, and before them how often it plays, as its
/// chunks say.
std::vector<int> webpTimes(const std::string& path) {
    const std::string bytes = readBytes(path);
    const auto number = [&](std::size_t at, int count) {
        int value = 0;
        for (int i = count; i-- > 0;) value = value << 8 | std::uint8_t(bytes[at + std::size_t(i)]);
        return value;
    };
    std::vector<int> times;
    for (std::size_t at = 12; at + 8 <= bytes.size();) {
        const std::string kind = bytes.substr(at, 4);
        if (kind == "ANIM") times.push_back(number(at + 12, 2));
        if (kind == "ANMF") times.push_back(number(at + 20, 3));
        const auto size = std::size_t(number(at + 4, 4));
        at += 8 + size + size % 2;
    }
    return times;
}

class Formats : public testing::Test {
  protected:
    TemporaryFolder files_;

    std::string path(const std::string& name) { return files_ / name; }

    Outcome render(const Arguments& more, const std::string& input = "/dev/null") {
        Arguments arguments{"render"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        Outcome outcome = qvfilter(arguments, input);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        return outcome;
    }

    /// A quarter transparent, in one colour but for what moves at the bottom, a third of a second.
    void makeAlphaClip() {
        ffmpeg({"-f", "lavfi", "-i", "color=0xc86432:s=64x48:r=30:d=0.34", "-f", "lavfi", "-i",
                "testsrc2=s=64x16:r=30:d=0.34", "-filter_complex",
                "[0][1]overlay=0:32,format=rgba,colorchannelmixer=aa=0.75", "-c:v", "qtrle",
                path("alpha.mov")});
    }
};

TEST_F(Formats, MovingPicturesHaveTheirDelaysLoopsAndAlpha) {
    makeAlphaClip();
    render({"-i", path("alpha.mov"), "-o", path("a.gif"), "--loop", "3"});
    const auto delays =
        run({"ffprobe", "-v", "error", "-show_entries", "packet=duration", "-of", "csv=p=0", path("a.gif")})
            .output;
    EXPECT_THAT(delays, testing::StartsWith("3\n4\n3\n3\n4\n3\n"));  // hundredths: on time within half of one
    // Of this block the number says how often it is repeated.
    EXPECT_THAT(readBytes(path("a.gif")), HasSubstr(std::string("NETSCAPE2.0\x03\x01\x02\x00", 15)));
    render({"-i", path("alpha.mov"), "-y", "-o", path("a.gif"), "--loop", "1"});
    EXPECT_THAT(readBytes(path("a.gif")), testing::Not(HasSubstr("NETSCAPE")));

    render({"-i", path("alpha.mov"), "-o", path("a.webp"), "--loop", "3"});
    const std::vector<int> times = webpTimes(path("a.webp"));
    ASSERT_GT(times.size(), 2u);  // frames that look the same become one
    EXPECT_EQ(times[0], 3);
    EXPECT_EQ(std::accumulate(times.begin() + 1, times.end(), 0), 367);
    // Read back with libwebp, its alpha is that of the source.
    render({"-i", path("a.webp"), "-o", path("w_%d.png")});
    EXPECT_EQ(python("p = cv2.imread(sys.argv[1], cv2.IMREAD_UNCHANGED)[20, 20].astype(int)\n"
                     "print(np.abs(p - [50, 100, 200, 191]).max() < 4)",
                     {path("w_2.png")}),
              "True\n");
}

TEST_F(Formats, AGifShowsWhatWasRendered) {
    makeClip(path("clip.mkv"), "testsrc2=s=160x96:r=25:d=0.4", {"-c:v", "ffv1"});
    render({"-i", path("clip.mkv"), "-e", "QVBlackWhiteMTIFilter", "-o", path("a.gif")});
    render({"-i", path("clip.mkv"), "-e", "QVBlackWhiteMTIFilter", "-o", path("p_%02d.png")});
    EXPECT_EQ(python("gif = cv2.VideoCapture(sys.argv[1])\n"
                     "for i in range(10):\n"
                     "    shown = gif.read()[1].astype(float); png = cv2.imread(sys.argv[2] % (i + 1))\n"
                     "    assert np.sqrt(((cv2.blur(shown, (5, 5)) - cv2.blur(png, (5, 5)))**2).mean()) < 2\n"
                     "print(gif.read()[0])",
                     {path("a.gif"), path("p_%02d.png")}),
              "False\n");
}

TEST_F(Formats, SequencesAreNumberedReadAtTheirRateAndReplacedOnlyWhenAsked) {
    makeAlphaClip();
    const std::string pictures = path("out_%04d.png");
    EXPECT_EQ(render({"-i", path("alpha.mov"), "-o", pictures, "--start-number", "1001"}).errors, "");
    EXPECT_EQ(files_.fileCount(), 12u);
    EXPECT_EQ(python("p = cv2.imread(sys.argv[1], cv2.IMREAD_UNCHANGED)\n"
                     "print(p.shape, np.abs(p[:30].astype(int) - [50, 100, 200, 191]).max() < 4)",
                     {path("out_1011.png")}),
              "(48, 64, 4) True\n");
    render({"-i", pictures, "--input-rate", "29.97", "-o", path("back.mov"), "--codec", "qtrle"});
    const Json back = probe(path("back.mov"), "v:0");
    EXPECT_EQ(back["nb_read_frames"], "11");
    EXPECT_EQ(back["r_frame_rate"], "30000/1001");
    const Outcome again = qvfilter({"render", "-i", path("alpha.mov"), "-o", pictures});
    EXPECT_EQ(again.exitCode, 5);
    EXPECT_THAT(again.errors, HasSubstr("out_1001.png' exists; -y replaces it"));

    // Of pictures nothing but their order counts; a sound has no place among them.
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=s=64x48:r=25:d=0.4", "-f", "lavfi", "-i", "sine=d=0.4",
            path("s.mkv")});
    const Outcome led = qvfilter({"transition", "wave", "-i", path("s.mkv"), "-i", pictures, "--duration",
                                  "0.2", "-o", path("t_%d.jpg")});
    EXPECT_EQ(led.exitCode, 0) << led.errors;
    EXPECT_THAT(led.errors, HasSubstr("the sound is left out"));
    EXPECT_TRUE(fs::exists(path("t_16.jpg")) && !fs::exists(path("t_17.jpg")));  // 10 + 11 - 5

    fs::remove(path("out_1007.png"));
    expectFailure({"render", "-i", pictures, "-o", "OUT/x.mkv"}, 3, "number 1007 of 1001 to 1011 is missing");
}

TEST_F(Formats, PixelsPassThroughPipes) {
    makeClip(path("clip.mkv"), "gradients=s=64x48:r=25:d=0.4:c0=red:c1=blue:n=2:seed=3:speed=0.1",
             {"-c:v", "ffv1", "-pix_fmt", "yuv420p"});
    ffmpeg({"-i", path("clip.mkv"), "-f", "rawvideo", path("clip.yuv")});
    ffmpeg({"-i", path("clip.mkv"), "-f", "rawvideo", "-pix_fmt", "rgb24", path("clip.rgb")});
    ffmpeg({"-i", path("clip.mkv"), path("clip.y4m")});
    const std::string raw = readBytes(path("clip.yuv"));
    const Arguments described{"--input-format", "rawvideo", "--input-size", "64x48"};
    for (const char* input : {"clip.yuv", "clip.y4m"}) {
        Arguments arguments{"-i", "-", "-f", "rawvideo", "-o", "-"};
        if (input == std::string("clip.yuv"))
            arguments.insert(arguments.end(), described.begin(), described.end());
        EXPECT_LT(rmsDifference(render(arguments, path(input)).output, raw), 2) << input;
    }
    writeBytes(path("out.y4m"),
               render({"-i", "-", "-f", "yuv4mpegpipe", "-o", "-"}, path("clip.y4m")).output);
    EXPECT_TRUE(readBytes(path("out.y4m")).starts_with("YUV4MPEG2 W64 H48 F25:1"));
    EXPECT_LT(rmsDifference(rgbFrame(path("out.y4m"), 9), rgbFrame(path("clip.mkv"), 9)), 3);

    // A clip that leaves out frames keeps its time where only the rate tells it; the others keep the times.
    makeClip(path("variable.mp4"), "testsrc2=s=64x48:r=30:d=2",
             {"-vf", "select='not(mod(n\\,3)*between(n\\,20\\,40))'", "-vsync", "vfr"});
    ffmpeg({"-i", path("variable.mp4"), "-vsync", "cfr", "-r", "30", path("constant.y4m")});
    render({"-i", path("variable.mp4"), "-o", path("filled.y4m")});
    EXPECT_TRUE(readBytes(path("filled.y4m")).starts_with("YUV4MPEG2 W64 H48 F30:1"));
    EXPECT_EQ(readBytes(path("filled.y4m")).size(), readBytes(path("constant.y4m")).size());
    for (const int frame : {19, 20, 21, 41, 59}) {
        EXPECT_LT(rmsDifference(rgbFrame(path("filled.y4m"), frame), rgbFrame(path("constant.y4m"), frame)),
                  3)
            << frame;
    }
    render({"-i", path("variable.mp4"), "--codec", "mpeg4", "-o", path("variable.avi")});
    EXPECT_EQ(probe(path("variable.avi"), "v:0")["r_frame_rate"], "30/1");

    makeAlphaClip();
    writeBytes(path("a.nut"), render({"-i", path("alpha.mov"), "-f", "nut", "-o", "-"}).output);
    EXPECT_EQ(probe(path("a.nut"), "v:0")["pix_fmt"], "rgba");

    // Another layout, its rate, and an effect over it.
    Arguments arguments{"-i",
                        "-",
                        "-e",
                        "QVBlackWhiteMTIFilter",
                        "-f",
                        "nut",
                        "-o",
                        "-",
                        "--input-rate",
                        "50",
                        "--input-pix-fmt",
                        "rgb24"};
    arguments.insert(arguments.end(), described.begin(), described.end());
    writeBytes(path("grey.nut"), render(arguments, path("clip.rgb")).output);
    EXPECT_EQ(probe(path("grey.nut"), "v:0")["avg_frame_rate"], "50/1");
    EXPECT_LT(meanChroma(rgbFrame(path("grey.nut"), 5)), 2);
}

TEST_F(Formats, TheFirstFrameOfAPipeWaitsForNoSecond) {
    makeClip(path("one.y4m"), "testsrc2=s=64x48:r=25", {"-frames:v", "1"});
    // The writer holds the pipe open until the frame has come out at the other end.
    const std::string script =
        "mkfifo \"$2/out\"; { cat \"$2/one.y4m\"; read -r; } <\"$2/out.done\" | \"$1\" render -i - -f "
        "rawvideo -o "
        "- 2>\"$2/errors\" | { head -c 4608 | wc -c; echo >\"$2/out.done\"; }";
    run({"mkfifo", path("out.done")});
    const Outcome outcome = run({"timeout", "60", "bash", "-c", "exec 9<>\"$2/out.done\"; " + script, "-",
                                 QV_TOOL, fs::path(path("x")).parent_path()});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, "4608\n");
}

TEST_F(Formats, WhatCannotBeReadOrWrittenIsOneLine) {
    makeClip(path("clip.y4m"), "testsrc2=s=64x48:r=25:d=0.4", {});
    const std::string clip = readBytes(path("clip.y4m"));
    writeBytes(path("cut.y4m"), clip.substr(0, clip.size() - 100));
    ffmpeg({"-i", path("clip.y4m"), "-f", "rawvideo", path("clip.yuv")});
    writeBytes(path("cut.yuv"), readBytes(path("clip.yuv")).substr(0, 4608 * 3 + 10));
    const std::string out = "OUT/x.mkv";
    const Arguments raw{"--input-format", "rawvideo", "--input-size", "64x48"};
    const struct {
        std::string input, output;
        Arguments more;
        int exitCode;
        std::string cause;
    } cases[] = {
        {"cut.y4m", out, {}, 3, "cut off"},
        {"cut.yuv", out, raw, 3, "damaged after 0.120 s"},
        {"clip.yuv", out, {"--input-format", "rawvideo"}, 2, "--input-size"},
        {"clip.yuv", out, {"--input-format", "rawvideo", "--input-size", "64"}, 2, "--input-size takes"},
        {"clip.yuv",
         out,
         {"--input-format", "rawvideo", "--input-size", "64x48", "--input-pix-fmt", "nix"},
         3,
         "'nix'"},
        {"clip.yuv", out, {"--input-format", "yuv4mpegpipe"}, 3, "it is no yuv4mpegpipe"},
        {"clip.yuv", out, {"--input-format", "nix"}, 3, "no input format 'nix'"},
        {"clip.y4m", out, {"--input-size", "64x48"}, 2, "--input-format"},
        {"clip.y4m", out, {"--input-rate", "50"}, 2, "--input-rate is for"},
        {"s_%d.png", out, {"--input-rate", "0"}, 2, "frames a second"},
        {"s_%d.png", out, {}, 3, "no picture"},
        {"s_%d_%d.png", out, {}, 3, "one number"},
        {"clip.y4m", "OUT/s_%d_%d.png", {}, 5, "one number"},
        {"clip.y4m", "OUT/s.png", {}, 5, "needs a number"},
        {"clip.y4m", "OUT/x.y4m", {"--pix-fmt", "rgba"}, 5, "yuv4mpegpipe does not take rgba"},
        {"clip.y4m", "OUT/x.y4m", {"--codec", "libx264"}, 5, "takes no h264"},
        {"clip.y4m", "/dev/full", {"-f", "rawvideo"}, 5, "No space left"},
    };
    for (const auto& [input, output, more, exitCode, cause] : cases) {
        Arguments arguments{"render", "-i", path(input), "-o", output};
        arguments.insert(arguments.end(), more.begin(), more.end());
        expectFailure(arguments, exitCode, cause);
    }
    // A closed pipe is an output that cannot be written.
    const Outcome closed = run({"bash", "-c",
                                "\"$1\" render -i \"$2\" -f rawvideo -o - | head -c 1 >/dev/null; "
                                "echo ${PIPESTATUS[0]}",
                                "-", QV_TOOL, path("clip.y4m")});
    EXPECT_THAT(closed.output, testing::AnyOf("5\n", "0\n"));
    EXPECT_LE(closed.errorLines(), 1u) << closed.errors;
    // Where there is a device, it encodes.
    const Outcome hardware =
        qvfilter({"render", "-i", path("clip.y4m"), "--codec", "h264_vaapi", "-o", path("x.mkv")});
    if (hardware.exitCode != 0) {
        EXPECT_EQ(hardware.exitCode, 5);
        EXPECT_THAT(hardware.errors, HasSubstr("h264_vaapi"));
        EXPECT_EQ(hardware.errorLines(), 1u);
    }
}

TEST_F(Formats, ProgressAsJSON) {
    makeClip(path("clip.mkv"), "testsrc2=s=64x48:r=25:d=1", {"-c:v", "ffv1"});
    const Outcome outcome = render({"-i", path("clip.mkv"), "-o", path("out.mkv"), "--json-progress"});
    std::istringstream lines(outcome.errors);
    Json last;
    for (std::string line; std::getline(lines, line);) last = Json::parse(line);
    EXPECT_EQ(last["frame"], 25);
    EXPECT_EQ(last["frames"], 25);
    EXPECT_EQ(last["phase"], "end");
    EXPECT_NEAR(last["seconds"].get<double>(), 0.96, 0.001);
    EXPECT_GT(last["fps"].get<double>(), 0);
    EXPECT_EQ(last["eta"].get<double>(), 0);
}

}  // namespace
}  // namespace qv
