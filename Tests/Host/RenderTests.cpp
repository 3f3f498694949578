// render: what becomes of a clip's streams, times, tags and pixels.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

using ::testing::HasSubstr;

class Render : public testing::Test {
  protected:
    TemporaryFolder files_;

    void render(const std::string& input, const std::string& output, const Arguments& more) {
        Arguments arguments{"render", "-i", files_ / input, "-o", files_ / output};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Outcome outcome = qvfilter(arguments);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "");
    }

    /// Renders in grey and compares all that should not change.
    void expectKept(const std::string& input, const std::string& output, const Arguments& more = {}) {
        SCOPED_TRACE(input + " to " + output);
        Arguments arguments{"-e", "QVBlackWhiteMTIFilter"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        render(input, output, arguments);
        const Json before = probe(files_ / input, "v:0"), after = probe(files_ / output, "v:0");
        for (const char* key : {"width", "height", "nb_read_frames", "color_space", "color_transfer",
                                "color_primaries", "color_range", "sample_aspect_ratio", "pix_fmt"}) {
            EXPECT_EQ(before.value(key, Json()), after.value(key, Json())) << key;
        }
        EXPECT_LT(meanChroma(rgbFrame(files_ / output, 5)), 4);
        EXPECT_GT(meanChroma(rgbFrame(files_ / input, 5)), 20);
    }
};

TEST_F(Render, KeepsSoundTagsRotationAndUnevenTimes) {
    ffmpeg({"-f",
            "lavfi",
            "-i",
            "testsrc2=s=160x90:r=25:d=1",
            "-f",
            "lavfi",
            "-i",
            "sine=d=2",
            "-vf",
            "setpts='if(lt(N,10),N,10+(N-10)*3)/25/TB'",
            "-vsync",
            "vfr",
            "-c:v",
            "libx264",
            "-c:a",
            "aac",
            "-metadata",
            "title=Lake",
            "-metadata:s:a",
            "language=deu",
            files_ / "plain.mp4"});
    ffmpeg({"-i", files_ / "plain.mp4", "-c", "copy", "-metadata:s:v", "rotate=90", files_ / "clip.mp4"});
    expectKept("clip.mp4", "out.mp4");
    EXPECT_EQ(packetHash(files_ / "clip.mp4", "a:0"), packetHash(files_ / "out.mp4", "a:0"));
    const auto times = frameTimes(files_ / "clip.mp4");
    EXPECT_GT(times.back() - times[times.size() - 2], times[1] - times[0]);
    EXPECT_EQ(times, frameTimes(files_ / "out.mp4"));
    const Json before = probe(files_ / "clip.mp4", "v:0"), after = probe(files_ / "out.mp4", "v:0");
    ASSERT_TRUE(before.contains("side_data_list") && after.contains("side_data_list"));
    EXPECT_EQ(before["side_data_list"][0]["rotation"], after["side_data_list"][0]["rotation"]);
    EXPECT_EQ(probe(files_ / "out.mp4", "a:0")["tags"]["language"], "deu");
    EXPECT_THAT(run({"ffprobe", "-v", "error", "-show_format", files_ / "out.mp4"}).output,
                HasSubstr("TAG:title=Lake"));
}

TEST_F(Render, KeepsEveryKindOfPicture) {
    const auto make = [&](const std::string& name, const std::string& source, const Arguments& encoding) {
        makeClip(files_ / name, source, encoding);
    };
    const std::string even = "testsrc2=s=160x90:r=25:d=0.4", odd = "testsrc=s=161x91:r=25:d=0.4";
    make("odd.mkv", odd, {"-c:v", "ffv1", "-pix_fmt", "yuv420p"});
    expectKept("odd.mkv", "odd-same.mkv", {"--codec", "ffv1"});
    expectKept("odd.mkv", "odd.webm", {"--option", "deadline=realtime"});
    make("ten.mp4", even,
         {"-c:v", "libx264", "-pix_fmt", "yuv420p10le", "-colorspace", "bt2020nc", "-color_primaries",
          "bt2020", "-color_trc", "smpte2084", "-color_range", "tv"});
    expectKept("ten.mp4", "ten-out.mp4");
    // Four-two-zero cannot hold an odd size in H.264, so the size wins.
    render("odd.mkv", "odd.mp4", {"-e", "QVBlackWhiteMTIFilter"});
    EXPECT_EQ(probe(files_ / "odd.mp4", "v:0")["pix_fmt"], "yuv444p");
    EXPECT_EQ(probe(files_ / "odd.mp4", "v:0")["width"], 161);
}

TEST_F(Render, TenBitsAreNotEightBits) {
    // A ramp so flat that eight bits would make steps of it.
    makeClip(files_ / "ramp.mkv",
             "color=black:s=256x64:r=25:d=0.2,format=yuv444p10le,geq=lum='400+X/4':cb=512:cr=512",
             {"-c:v", "ffv1"});
    render("ramp.mkv", "out.mkv", {"--codec", "ffv1"});
    ffmpeg({"-i", files_ / "out.mkv", "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "yuv444p10le",
            files_ / "raw"});
    const std::string raw = readBytes(files_ / "raw");
    ASSERT_EQ(raw.size(), 256u * 64 * 2 * 3);
    int worst = 0;
    for (int x = 0; x < 256; ++x) {
        const auto at = std::size_t(2 * (32 * 256 + x));
        const int code = std::uint8_t(raw[at]) | std::uint8_t(raw[at + 1]) << 8;
        worst = std::max(worst, std::abs(code - (400 + x / 4)));
    }
    EXPECT_LE(worst, 1);
}

TEST_F(Render, AlphaSurvivesAnEffect) {
    makeClip(files_ / "alpha.mov", "testsrc2=s=160x90:r=25:d=0.2,format=rgba,colorchannelmixer=aa=0.5",
             {"-c:v", "qtrle"});
    render("alpha.mov", "out.mov", {"--codec", "qtrle", "-e", "QVBlackWhiteMTIFilter"});
    ffmpeg(
        {"-i", files_ / "out.mov", "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgba", files_ / "raw"});
    const std::string raw = readBytes(files_ / "raw");
    ASSERT_EQ(raw.size(), 160u * 90 * 4);
    for (std::size_t i = 3; i < raw.size(); i += 4) ASSERT_NEAR(std::uint8_t(raw[i]), 128, 2);
}

TEST_F(Render, EffectsSeeTheClipsTime) {
    makeClip(files_ / "late.mkv", "testsrc2=s=160x90:r=25:d=1", {"-c:v", "ffv1", "-output_ts_offset", "3"});
    render("late.mkv", "out.mkv", {"--codec", "ffv1", "--pix-fmt", "yuv444p", "-e", "QVSnowMTIFilter"});
    const std::string still = files_ / "still.png";
    ASSERT_EQ(
        qvfilter({"still", "-i", files_ / "late.mkv", "--time", "0.48", "-e", "QVSnowMTIFilter", "-o", still})
            .exitCode,
        0);
    EXPECT_LT(rmsDifference(rgbFrame(files_ / "out.mkv", 12), rgbFrame(still)), 3);
    EXPECT_GT(rmsDifference(rgbFrame(files_ / "out.mkv", 13), rgbFrame(still)), 6);
}

TEST_F(Render, EffectsSeeTheClipUpright) {
    makeClip(files_ / "lying.mp4", "color=gray:s=160x90:r=25:d=0.2", {"-c:v", "libx264"});
    ffmpeg({"-i", files_ / "lying.mp4", "-c", "copy", "-metadata:s:v", "rotate=90", files_ / "turned.mp4"});
    render("turned.mp4", "out.mp4", {"-e", "QVFireMTIFilter:effectValue=1", "--crf", "5"});
    const std::string shown = rgbFrame(files_ / "out.mp4", 2);  // 90 wide, 160 high as players show it
    ASSERT_EQ(shown.size(), 90u * 160 * 3);
    const std::size_t half = shown.size() / 2;
    EXPECT_GT(meanChroma(shown.substr(half)), 2 * meanChroma(shown.substr(0, half)))
        << "flames burn at the bottom";
}

TEST_F(Render, APictureIsAClipWhoseTimeStandsStillUnlessAsked) {
    makeClip(files_ / "photo.png", "testsrc2=s=160x90", {"-frames:v", "1"});
    for (const char* effect :
         {"QVSnowMTIFilter", "QVFireworkMTIFilter", "QVSnowMTIFilter:movesPhotos=true"}) {
        render("photo.png", "out.mkv", {"-y", "--codec", "ffv1", "--duration", "1", "-e", effect});
        EXPECT_EQ(probe(files_ / "out.mkv", "v:0")["nb_read_frames"], "25");
        const double change =
            rmsDifference(rgbFrame(files_ / "out.mkv", 5), rgbFrame(files_ / "out.mkv", 20));
        // Fireworks go on over a photo.
        EXPECT_EQ(change > 0, effect != std::string("QVSnowMTIFilter")) << effect << ' ' << change;
    }
}

TEST_F(Render, MovingPictures) {
    makeClip(files_ / "clip.mp4", "testsrc2=s=64x48:r=25:d=1", {"-c:v", "libx264"});
    for (const char* kind : {"gif", "apng"}) {
        const std::string name = std::string("out.") + kind;
        render("clip.mp4", name, {"-e", "QVBlackWhiteMTIFilter"});
        EXPECT_EQ(probe(files_ / name, "v:0")["codec_name"], kind);
        EXPECT_EQ(probe(files_ / name, "v:0")["nb_read_frames"], "25");
    }
}

TEST_F(Render, PipesAndProgress) {
    makeClip(files_ / "clip.mkv", "testsrc2=s=160x90:r=25:d=1", {"-c:v", "libx264"});
    const Outcome piped = qvfilter({"render", "-i", "-", "-e", "QVMosaicMTIFilter", "--progress", "-o", "-"},
                                   files_ / "clip.mkv");
    ASSERT_EQ(piped.exitCode, 0) << piped.errors;
    writeBytes(files_ / "out.mkv", piped.output);
    EXPECT_EQ(probe(files_ / "out.mkv", "v:0")["nb_read_frames"], "25");
    for (const char* format : {"mpegts", "mp4"}) {
        const Outcome other = qvfilter({"render", "-i", files_ / "clip.mkv", "--format", format, "-o", "-"});
        writeBytes(files_ / format, other.output);
        EXPECT_EQ(probe(files_ / format, "v:0")["nb_read_frames"], "25") << format;
    }
    EXPECT_THAT(piped.errors, HasSubstr("frame=25 total=25 "));
    EXPECT_THAT(piped.errors, testing::EndsWith("progress=end\n"));
}

TEST_F(Render, CodecOptionsArrive) {
    makeClip(files_ / "clip.mkv", "testsrc2=s=160x90:r=25:d=1", {"-c:v", "libx264"});
    render("clip.mkv", "fine.mp4", {"--crf", "10"});
    render("clip.mkv", "coarse.mp4", {"--crf", "40", "--preset", "medium", "--threads", "1"});
    EXPECT_GT(readBytes(files_ / "fine.mp4").size(), 2 * readBytes(files_ / "coarse.mp4").size());
    EXPECT_THAT(readBytes(files_ / "coarse.mp4"), HasSubstr("crf=40.0"));
    render("clip.mkv", "deep.mp4", {"--pix-fmt", "yuv420p10le"});
    EXPECT_EQ(probe(files_ / "deep.mp4", "v:0")["pix_fmt"], "yuv420p10le");
}

TEST_F(Render, AnInterruptLeavesNothing) {
    makeClip(files_ / "long.mkv", "testsrc2=s=640x360:r=25:d=60",
             {"-c:v", "libx264", "-preset", "ultrafast"});
    for (int signal : {SIGINT, SIGTERM}) {
        const TemporaryFolder outputs;
        Process process({QV_TOOL, "render", "-i", files_ / "long.mkv", "-e", "QVFireMTIFilter", "--progress",
                         "-o", outputs / "out.mp4"});
        EXPECT_TRUE(process.waitForErrors("progress=continue"));
        process.signal(signal);
        const Outcome outcome = process.wait();
        EXPECT_EQ(outcome.exitCode, 130);
        EXPECT_THAT(outcome.errors, testing::EndsWith("\nqvfilter: interrupted\n"));
        EXPECT_THAT(outcome.errors, testing::Not(HasSubstr("progress=end")));
        EXPECT_EQ(outputs.fileCount(), 0u);
    }
}

TEST_F(Render, TheValidationLayerIsSilent) {
    makeClip(files_ / "clip.mkv", "testsrc2=s=160x90:r=25:d=0.4",
             {"-c:v", "libx264", "-pix_fmt", "yuv420p10le"});
    render("clip.mkv", "out.mkv", {"--validate", "-e", "QVSnowMTIFilter", "-e", "QVUnSharpMaskMTIFilter"});
}

}  // namespace
}  // namespace qv
