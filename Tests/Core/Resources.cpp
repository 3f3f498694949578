#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Foundation/Log.h"
#include "Platform/Media/ImageFile.h"
#include "QVFilterCore/QVResourceBundle.h"
#include "QVFilterExtension/Private/NSBundle+QVMTIFilter.h"
#include "QVFilterExtension/Private/UIFont+QVMTIFilter.h"
#include "QVFilterExtension/Private/UIImage+QVMTIFilter.h"
#include "QVFilterExtension/QVMTIFilterUtil.h"
#include "Tests/Drawing/TestFont.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

UIImage grey(int width, int height, double scale = 1) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width) * height * 4, 128);
    return UIImage(Bitmap{width, height, pixels}, scale);
}

/// A bundle of its own in place of the library's, and every line that is logged meanwhile.
class ResourcesTest : public testing::Test {
  protected:
    void SetUp() override {
        setResourceBundlePath(folder / ".");
        setLogSink([this](std::string_view line) { lines.emplace_back(line); });
    }
    void TearDown() override {
        setLogSink({});
        setResourceBundlePath("");
    }

    TemporaryFolder folder;
    std::vector<std::string> lines;
};

TEST(ResourceBundle, IsBesideTheLibraryUnlessTheEnvironmentOrTheHostSayElse) {
    unsetenv("QVFILTER_BUNDLE");
    setResourceBundlePath("");
    auto own = resourceBundle();
    ASSERT_TRUE(own);
    auto library = NSBundle::bundleForAddress(reinterpret_cast<const void*>(&setResourceBundlePath));
    EXPECT_EQ(own->path(), library->path() + "/QVFilterExtension.bundle");
    EXPECT_EQ(qv_ResourcesBundle(), own);

    TemporaryFolder elsewhere, late;
    setenv("QVFILTER_BUNDLE", (elsewhere / "").c_str(), 1);
    EXPECT_EQ(resourceBundle(), own);  // what was found is kept
    setResourceBundlePath("");
    EXPECT_EQ(resourceBundle()->path() + "/", elsewhere / "");
    // The host's word counts most, and a bundle that is not there yet is looked for again.
    setResourceBundlePath(late / "made.bundle");
    EXPECT_FALSE(qv_ResourcesBundle());
    EXPECT_FALSE(qv_imageWithFileName("any.png"));
    EXPECT_TRUE(qv_fontWithFileName("any.ttf", 9));
    std::filesystem::create_directory(late / "made.bundle");
    ASSERT_TRUE(resourceBundle());
    EXPECT_EQ(resourceBundle()->path(), late / "made.bundle");
    unsetenv("QVFILTER_BUNDLE");
    setResourceBundlePath("");
    EXPECT_EQ(resourceBundle()->path(), own->path());
}

TEST_F(ResourcesTest, PicturesComeByFileName) {
    ASSERT_TRUE(writePNG(grey(6, 4).bitmap(), folder / "asset@2x.png"));
    writeBytes(folder / "broken.png", "not a picture");
    auto image = qv_imageWithFileName("asset@2x.png");
    EXPECT_EQ(image.size(), (CGSize{3, 2}));
    for (const char* missing : {"asset@2x", "missing.png", "broken.png", "../asset@2x.png", ""})
        EXPECT_FALSE(qv_imageWithFileName(missing)) << missing;
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(ResourcesTest, PicturesAreRedrawnAtOtherSizes) {
    auto image = grey(31, 20, 2);  // 15.5 × 10 points
    auto half = scale(image, 0.5);
    EXPECT_EQ(half.size(), (CGSize{8, 5}));
    EXPECT_EQ(half.scale(), 2);
    EXPECT_EQ(half.bitmap().width, 16);
    // 1.4999999999999998 and 0.49999999999999994 are halves once they are narrowed.
    EXPECT_EQ(scale(grey(15, 5), std::nextafter(0.1, 0)).size(), (CGSize{2, 1}));
    auto plain = scaleToSize(image, {7, 9});
    EXPECT_EQ(plain.scale(), 1);
    EXPECT_EQ(plain.bitmap().width, 7);
    EXPECT_EQ(plain.bitmap().row(8)[27], 128);
    EXPECT_EQ(scaleToSizeWithSameScale(image, {7, 9}).bitmap().height, 18);
    for (CGSize none : {CGSize{0, 5}, {-1, 5}, {NAN, 5}, {1e9, 1}}) EXPECT_FALSE(scaleToSize(image, none));
    EXPECT_FALSE(scale(UIImage(), 2));
}

TEST_F(ResourcesTest, FontsAreRegisteredOnFirstUse) {
    writeBytes(folder / "Bundled-Regular.ttf", testFont("Bundled-Regular"));
    for (double size : {20.0, 30.0}) {
        auto font = qv_fontWithFileName("Bundled-Regular.ttf", size);
        EXPECT_EQ(font.fontName(), "Bundled-Regular");
        EXPECT_EQ(font.pointSize(), size);
    }
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(ResourcesTest, FontsThatCannotBeHadBecomeTheSystemFont) {
    auto system = UIFont::systemFontOfSize(17);
    auto expectSystem = [&](const UIFont& font) {
        EXPECT_EQ(font.face(), system.face());
        EXPECT_EQ(font.pointSize(), 17);
    };
    writeBytes(folder / "Alias.ttf", testFont("QuiteAnother"));
    writeBytes(folder / "Broken.ttf", "not a font");
    expectSystem(qv_fontWithFileName("Missing.ttf", 17));
    expectSystem(qv_fontWithFileName("Alias.ttf", 17));
    EXPECT_TRUE(UIFont::fontWithName("QuiteAnother", 17));
    EXPECT_THAT(lines, IsEmpty());
    expectSystem(qv_fontWithFileName("Broken.ttf", 17));
    EXPECT_THAT(lines, ElementsAre(StartsWith("register font error Broken.ttf, not a readable font")));
}

TEST(QVMTIFilterUtil, KnowsTheDevice) {
    for (const char* low : {"iPhone2,1", "iPhone6,1", "iPod5,1", "iPad4,9", "iPhone6"})
        EXPECT_TRUE(QVMTIFilterUtil::isLowEndDevice(low)) << low;
    for (const char* fine :
         {"iPhone7,2", "iPhone1,1", "iPad5,1", "iPad1,1", "iPod7,1", "an iPhone6,1", "iPhone", ""})
        EXPECT_FALSE(QVMTIFilterUtil::isLowEndDevice(fine)) << fine;
}

TEST(QVMTIFilterUtil, WritesTimeCodes) {
    for (auto [seconds, text] : {std::pair(0.0, "0:00:00:00"),
                                 {59.96, "0:01:00:00"},
                                 {3725.4, "1:02:05:04"},
                                 {3599.949, "0:59:59:09"},
                                 {360000.0, "100:00:00:00"},
                                 {-5.0, "0:00:00:00"},
                                 {std::nan(""), "0:00:00:00"}})
        EXPECT_EQ(QVMTIFilterUtil::timeFormatterWithMSEC4(seconds), text);
    EXPECT_FALSE(QVMTIFilterUtil::timeFormatterWithMSEC4(HUGE_VAL).empty());
}

TEST(QVMTIFilterUtil, PlainFunctions) {
    for (const auto& [hue, offset, shifted] :
         {std::tuple{0.9, 0.2, 0.1}, {0.1, -0.3, 0.8}, {0.25, 3.5, 0.75}, {0.5, 0.25, 0.75}}) {
        const auto is = HueColor(UIColor::colorWithHueSaturationBrightnessAlpha(hue, 0.6, 0.8, 0.3), offset)
                            .getHueSaturationBrightnessAlpha();
        EXPECT_NEAR(is.hue, shifted, 1e-12);
        EXPECT_NEAR(is.saturation, 0.6, 1e-12);
        EXPECT_NEAR(is.brightness, 0.8, 1e-12);
        EXPECT_EQ(is.alpha, 0.3);
    }
    EXPECT_EQ(SumN(0), 0);
    EXPECT_EQ(SumN(4), 10);
    EXPECT_EQ(SumN(46340), 1073720970);
    EXPECT_EQ(SumN(65536), 32768);  // 65536 · 65537 leaves 65536 in 32 bits
}

}  // namespace
}  // namespace qv
