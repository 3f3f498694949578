// mask and --mask auto, with a network that takes red for a person.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Host/Tool.h"
#include "Tests/Support/TinyNetwork.h"

namespace qv {
namespace {

class Mask : public testing::Test {
  protected:
    void SetUp() override {
#ifndef QV_PERSON_MASK
        GTEST_SKIP() << "built without OpenCV's dnn module";
#endif
        writeBytes(model_, test::redNetwork(24));
        // A red block that wanders to the right.
        makeClip(
            clip_,
            "color=0x102030:s=98x66:r=10:d=1.2[g];color=red:s=40x40:r=10:d=1.2[r];[g][r]overlay=x=n*4:y=13",
            {"-c:v", "ffv1", "-pix_fmt", "bgr0"});
    }
    Outcome mask(const std::string& input, const std::string& output, Arguments more = {}) {
        Arguments arguments{"mask", "-i", input, "-o", output, "--model", model_};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return qvfilter(arguments);
    }

    TemporaryFolder files_;
    const std::string model_ = files_ / "red.tflite", clip_ = files_ / "clip.mkv";
};

TEST_F(Mask, OfAClipHasItsFramesAndIsLossless) {
    const std::string mp4 = files_ / "mask.mp4", ffv1 = files_ / "mask.mkv";
    for (const Outcome& outcome : {mask(clip_, mp4), mask(clip_, ffv1, {"--codec", "ffv1"})})
        ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    const Json video = probe(mp4, "v:0");
    EXPECT_EQ(video["width"], 98);
    EXPECT_EQ(video["height"], 66);
    EXPECT_EQ(video["nb_read_frames"], "12");
    EXPECT_EQ(frameTimes(ffv1), frameTimes(clip_));
    for (int frame : {0, 5, 11}) {
        const std::string rgb = rgbFrame(mp4, frame);
        EXPECT_EQ(rgb, rgbFrame(ffv1, frame)) << "both codecs keep every pixel";
        EXPECT_EQ(meanChroma(rgb), 0);
        const auto at = [&](int x, int y) { return int(std::uint8_t(rgb[std::size_t(y * 98 + x) * 3])); };
        EXPECT_EQ(at(4 * frame + 20, 33), 255) << frame;
        EXPECT_EQ(at(4 * frame + 20, 5), 0) << frame;
        EXPECT_EQ(at((4 * frame + 60) % 98, 33), 0) << frame;
    }
}

TEST_F(Mask, OfAPictureIsWhatAutoTakes) {
    const std::string picture = files_ / "picture.png", png = files_ / "mask.png";
    writeBytes(picture, qvfilter({"still", "-i", clip_, "--time", "0.5", "-o", "-"}).output);
    ASSERT_EQ(mask(picture, png).exitCode, 0);
    const std::string gray = rgbFrame(png);
    EXPECT_EQ(std::uint8_t(gray[std::size_t(33 * 98 + 40) * 3]), 255);
    EXPECT_EQ(std::uint8_t(gray[std::size_t(33 * 98 + 80) * 3]), 0);

    std::string effect;
    const Json classes = qvfilterJSON({"list", "QVAI*", "--json"});
    for (const Json& each : classes) {
        for (const Json& input : each["inputs"])
            if (effect.empty() && input["role"] == "mask" && input["type"] == "image") effect = each["name"];
    }
    if (effect.empty()) GTEST_SKIP() << "no effect shows a subject";
    const std::string automatic = files_ / "auto.png", given = files_ / "given.png";
    const Arguments tool{"env", "QVFILTER_PERSON_MODEL=" + model_, QV_TOOL};
    for (const auto& [from, output] : {std::pair{std::string("auto"), automatic}, {png, given}}) {
        Arguments arguments = tool;
        arguments.insert(arguments.end(),
                         {"still", "-i", picture, "--mask", from, "-e", effect, "-o", output});
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    }
    EXPECT_EQ(rgbFrame(automatic), rgbFrame(given)) << effect;
    Arguments arguments = tool;
    const std::string rendered = files_ / "rendered.mkv";
    arguments.insert(arguments.end(), {"render", "-i", clip_, "--mask", "auto", "-e", effect, "--codec",
                                       "ffv1", "-o", rendered});
    ASSERT_EQ(run(arguments).exitCode, 0);
    EXPECT_LT(rmsDifference(rgbFrame(rendered, 5), rgbFrame(given)), 40) << effect;
}

TEST_F(Mask, FailuresAreOneLine) {
    const std::string text = files_ / "text";
    writeBytes(text, "no network");
    expectFailure({"mask", "-i", clip_, "--model", text, "-o", "OUT/x.mp4"}, 3,
                  "is not a TensorFlow Lite model");
    expectFailure({"mask", "-i", clip_, "--model", model_ + "x", "-o", "OUT/x.mp4"}, 3, "cannot be read");
    const Arguments nowhere{"env", "-u", "QVFILTER_PERSON_MODEL", "XDG_DATA_HOME=/nonexistent"};
    expectFailure({"mask", "-i", clip_, "-o", "OUT/x.mp4"}, 3, "qvfilter-fetch-person-model gets it",
                  nowhere);
    expectFailure({"render", "-i", clip_, "--mask", "auto", "-o", "OUT/x.mp4"}, 3,
                  "qvfilter-fetch-person-model gets it", nowhere);
    expectFailure({"mask", "-i", text, "--model", model_, "-o", "OUT/x.mp4"}, 3, "text");
    expectFailure({"mask", "-i", clip_, "--model", model_, "-o", clip_, "-n"}, 5, "exists");
}

}  // namespace
}  // namespace qv
