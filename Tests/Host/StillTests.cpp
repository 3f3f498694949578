// still and sheet: pictures.

#include <gtest/gtest.h>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

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
    EXPECT_EQ(meanChroma(grey), 0);
    const std::string greyed =
        still({"-i", picture(), "-e", "QVBlackWhiteMTIFilter", "-e", "QVFireMTIFilter"});
    EXPECT_GT(meanChroma(greyed), 1) << "fire after grey is coloured";
    EXPECT_EQ(meanChroma(still({"-i", picture(), "-e", "QVFireMTIFilter", "-e", "QVBlackWhiteMTIFilter"})),
              0);
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
