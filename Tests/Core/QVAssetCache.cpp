#include "QVFilterExtension/Private/QVAssetCache.h"

#include <filesystem>

#include <unistd.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterCore/QVResourceBundle.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

/// A resource bundle of its own, taken back when it goes.
class QVAssetCacheTest : public testing::Test {
  protected:
    QVAssetCacheTest() {
        std::filesystem::create_directory(folder_);
        setResourceBundlePath(folder_.string());
    }
    ~QVAssetCacheTest() override {
        setResourceBundlePath({});
        std::filesystem::remove_all(folder_);
    }
    void writeAsset(const std::string& name, int width, int height) {
        const Bitmap bitmap = makeBitmap(width, height, [](int, int) { return Pixel{1, 0.5f, 0, 1}; });
        ASSERT_TRUE(writePNG(bitmap, (folder_ / name).string()));
    }

    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("qv-asset-cache-" + std::to_string(getpid()));
    QVAssetCache cache_;
};

TEST_F(QVAssetCacheTest, LoadsAnAssetOnce) {
    EXPECT_FALSE(cache_.mtiImageNamed("dot.png"));
    EXPECT_FALSE(cache_.textureNamed("dot.png"));
    writeAsset("dot.png", 6, 4);
    const MTIImage image = cache_.mtiImageNamed("dot.png");
    const SpiritParam::Texture texture = cache_.textureNamed("dot.png");
    ASSERT_TRUE(image && texture) << "a missing asset is asked for again";
    EXPECT_EQ(image.size(), (CGSize{6, 4}));

    std::filesystem::remove(folder_ / "dot.png");
    EXPECT_EQ(cache_.mtiImageNamed("dot.png"), image);
    EXPECT_EQ(cache_.textureNamed("dot.png"), texture);
}

TEST_F(QVAssetCacheTest, KeepsFittedImagesOfTheLastSizes) {
    writeAsset("frame.png", 6, 4);
    int made = 0;
    auto fitted = [&](const std::string& name, CGSize size) {
        return cache_.fittedImage(name, size, [&](const UIImage& asset, CGSize wanted) {
            ++made;
            return scaleToSize(asset, wanted);
        });
    };
    EXPECT_FALSE(fitted("missing.png", {12, 8}));
    EXPECT_EQ(made, 0);
    const MTIImage preview = fitted("frame.png", {12, 8});
    EXPECT_EQ(preview.size(), (CGSize{12, 8}));
    const MTIImage full = fitted("frame.png", {24, 16});
    EXPECT_EQ(fitted("frame.png", {12, 8}), preview);
    EXPECT_EQ(fitted("frame.png", {24, 16}), full);
    EXPECT_EQ(made, 2);
    fitted("frame.png", {30, 20});
    EXPECT_NE(fitted("frame.png", {12, 8}), preview) << "a third size drops the oldest";
}

}  // namespace
}  // namespace qv::test
