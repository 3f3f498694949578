// still and sheet: pictures.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

using testing::HasSubstr;

constexpr const char* kSource = "testsrc2=s=160x90:r=25:d=1";

class Still : public testing::Test {
  protected:
    TemporaryFolder files_;

    std::string picture() {
        const std::string path = files_ / "picture.png";
        makeClip(path, kSource, {"-frames:v", "1", "-pix_fmt", "rgb24"});
        return path;
    }
    std::string clip() {
        const std::string path = files_ / "clip.mkv";
        makeClip(path, kSource, {"-c:v", "ffv1", "-pix_fmt", "yuv444p"});
        return path;
    }
    /// The picture that the tool makes, as RGB.
    std::string still(Arguments arguments) {
        const std::string output = files_ / "still.png";
        arguments.insert(arguments.begin(), {"still", "-y"});
        arguments.insert(arguments.end(), {"-o", output});
        const Outcome outcome = qvfilter(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return rgbFrame(output);
    }
};

TEST_F(Still, AChainAppliesEachEffectInItsTurn) {
    const std::string grey = still({"-i", picture(), "-e", "QVBlackWhiteMTIFilter"});
    EXPECT_GT(meanChroma(rgbFrame(picture())), 40);
    constexpr double kTone = 3;  // of the print
    EXPECT_LT(meanChroma(grey), kTone);
    const std::string greyed =
        still({"-i", picture(), "-e", "QVBlackWhiteMTIFilter", "-e", "QVFireMTIFilter"});
    EXPECT_GT(meanChroma(greyed), kTone + 1) << "fire after grey is coloured";
    EXPECT_LT(meanChroma(still({"-i", picture(), "-e", "QVFireMTIFilter", "-e", "QVBlackWhiteMTIFilter"})),
              kTone);
}

TEST_F(Still, AMomentOfAClipIsTheFrameShownThen) {
    const std::string source = clip();
    EXPECT_LT(rmsDifference(still({"-i", source, "--time", "0.4"}), rgbFrame(source, 10)), 2.5);
    EXPECT_LT(rmsDifference(still({"-i", source, "--time", "0.43"}), rgbFrame(source, 10)), 2.5);
    EXPECT_GT(rmsDifference(rgbFrame(source, 10), rgbFrame(source, 11)), 4);
}

TEST_F(Still, SizeFormatAndPipes) {
    EXPECT_EQ(still({"-i", picture(), "--size", "64x48"}).size(), 64u * 48 * 3);
    const std::string jpeg = files_ / "still.jpg";
    ASSERT_EQ(qvfilter({"still", "-i", picture(), "-o", jpeg}).exitCode, 0);
    EXPECT_EQ(probe(jpeg, "v:0")["codec_name"], "mjpeg");
    EXPECT_LT(rmsDifference(rgbFrame(jpeg), rgbFrame(picture())), 12);

    const Outcome piped = qvfilter({"still", "-i", "-", "-o", "-"}, picture());
    ASSERT_EQ(piped.exitCode, 0) << piped.errors;
    writeBytes(files_ / "piped.png", piped.output);
    EXPECT_EQ(rgbFrame(files_ / "piped.png"), rgbFrame(picture()));
}

TEST_F(Still, MasksComeFromPicturesClipsAndAlpha) {
    const std::string transparent = files_ / "transparent.png";
    makeClip(transparent, std::string(kSource) + ",format=rgba,colorchannelmixer=aa=0.5", {"-frames:v", "1"});
    const std::string same = rgbFrame(picture());
    EXPECT_EQ(still({"-i", picture(), "-e", "QVInterlayerFilter", "--mask", picture()}), same);
    EXPECT_EQ(still({"-i", picture(), "-e", "QVInterlayerFilter", "--mask", clip()}), same);
    still({"-i", transparent, "-e", "QVInterlayerFilter"});
    EXPECT_EQ(probe(files_ / "still.png", "v:0")["pix_fmt"], "rgba") << "alpha is kept";
}

TEST_F(Still, MasksAreMadeToFit) {
    // White on the left half; a line of pink around it. Masks of another size and shape are the same halves.
    const auto mask = [&](const std::string& name, const std::string& size, const Arguments& more) {
        makeClip(files_ / name, "color=black:s=" + size + ":r=25:d=0.4,drawbox=0:0:iw/2:ih:white:fill", more);
        return files_ / name;
    };
    const auto shown = [&](const std::string& file, const std::string& note) {
        const Outcome outcome =
            qvfilter({"still", "-y", "-i", picture(), "-e", "QVAIImaginaryFilter:colors=#ff00ff", "--mask",
                      file, "-o", files_ / "masked.png"});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        EXPECT_THAT(outcome.errors, HasSubstr(note));
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), note.empty() ? 0 : 1);
        return rgbFrame(files_ / "masked.png");
    };
    const std::string same = shown(mask("same.png", "160x90", {"-frames:v", "1"}), "");
    EXPECT_NE(same, rgbFrame(picture()));
    EXPECT_LT(rmsDifference(shown(mask("large.png", "640x360", {"-frames:v", "1"}), ""), same), 20);
    EXPECT_LT(
        rmsDifference(
            shown(mask("square.png", "96x96", {"-frames:v", "1"}), "96x96 is stretched over 160x90"), same),
        20);
    const std::string none = files_ / "none.png";
    makeClip(none, "color=black:s=160x90", {"-frames:v", "1"});
    EXPECT_EQ(shown(none, ""), rgbFrame(picture())) << "no subject";

    // Without any, a class that can do without leaves the picture, and a note tells; another one fails.
    const Outcome neon =
        qvfilter({"still", "-y", "-i", picture(), "-e", "QVAINeonFilter", "-o", files_ / "neon.png"});
    EXPECT_EQ(neon.exitCode, 0);
    EXPECT_THAT(neon.errors, HasSubstr("no subject is known"));
    EXPECT_EQ(rgbFrame(files_ / "neon.png"), rgbFrame(picture()));
    const Outcome line =
        qvfilter({"still", "-y", "-i", picture(), "-e", "QVAIImaginaryFilter", "-o", files_ / "line.png"});
    EXPECT_EQ(line.exitCode, 2);
    EXPECT_THAT(line.errors, HasSubstr("QVAIImaginaryFilter needs --mask FILE"));

    // A mask's clip that ends early is held.
    const std::string clips = files_ / "moving.mkv";
    makeClip(clips, "color=gray:s=160x90:r=25:d=0.8", {"-c:v", "ffv1"});
    const std::string shorter = mask("shorter.mkv", "160x90", {"-c:v", "ffv1"});
    const Outcome held = qvfilter({"render", "-i", clips, "-e", "QVAIImaginaryFilter", "--mask", shorter,
                                   "--codec", "ffv1", "-o", files_ / "held.mkv"});
    EXPECT_EQ(held.exitCode, 0);
    EXPECT_THAT(held.errors, HasSubstr("shorter.mkv' ends before its frames do"));
    EXPECT_EQ(std::count(held.errors.begin(), held.errors.end(), '\n'), 1);
    EXPECT_EQ(rgbFrame(files_ / "held.mkv", 19), rgbFrame(files_ / "held.mkv", 3));
}

TEST(Sheet, ShowsTheClassesAskedFor) {
    const TemporaryFolder files;
    const auto sheetSize = [&](Arguments arguments) {
        const std::string output = files / "sheet.png";
        arguments.insert(arguments.begin(), {"sheet", "-y", "-o", output, "--size", "80x45"});
        const Outcome outcome = qvfilter(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        const Json stream = probe(output, "v:0");
        return std::pair{stream["width"].get<int>(), stream["height"].get<int>()};
    };
    const auto one = sheetSize({"--only", "QVSplitFourFilter"});
    const auto both = sheetSize({"--only", "QVSplit????Filter"});
    const auto stacked = sheetSize({"--only", "QVSplit????Filter", "--columns", "1"});
    EXPECT_GT(both.first, 2 * 80);
    EXPECT_EQ(both.second, one.second);
    EXPECT_EQ(stacked.first, one.first);
    EXPECT_GT(stacked.second, one.second + 45);
    EXPECT_EQ(qvfilter({"sheet", "-o", files / "none.png", "--only", "nothing"}).exitCode, 2);
}

}  // namespace
}  // namespace qv
